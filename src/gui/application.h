#pragma once

#include <QIcon>
#include <QPointer>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>

#include "gui/host.h"
#include "gui/qt_tray.h"
#include "gui/support/help.h"
#include "gui/support/qt_user_interface.h"
#include "gui/workspace.h"

namespace corvalence::gui {

class DatabaseCommands;
class FileCommands;
class CheckCommands;
class ScheduleCommands;
class ToolCommands;
class ViewCommands;

/// One run of the graphical program, from the start routine to the clean-up. Needs the toolkit's application
/// object.
class Application {
  public:
    /// `startsInBackground`: whether there was anything on the command line.
    Application(const Host& host, bool startsInBackground);
    ~Application();

    /// Everything up to the window and its commands: lock, administrator, password. False where the program
    /// ends here; the user has been told why.
    bool start();
    /// Until the user closes the program, or the session ends.
    int run();
    /// What a run leaves is cleared away; once is enough.
    void stop();

    Frame& frame() noexcept { return *frame_; }
    Workspace& workspace() noexcept { return *workspace_; }
    ScheduleCommands& schedule() noexcept { return *schedule_; }
    /// The tray of the desktop, unless a test brings its own before start().
    std::unique_ptr<schedule::Tray> tray;
    std::function<bool()> hasTray = [] { return QtTray::isAvailable(); };

  private:
    bool makeInstallation();
    bool provePassword();
    void makeFrame();
    void makeCommands();
    void showFrame();
    void restoreLayout();
    void saveLayout();
    void takeSettings();
    void refreshInfoBars();
    void animate();
    void watchSignals();
    bool mayClose();
    void firstPaint();
    void openHelp(const QString& topic);
    OpenHelp helpOpener();

    Host host_;
    bool startsInBackground_;
    QtUserInterface ui_;
    platform::Platform platform_;
    std::unique_ptr<core::Run> run_;
    std::unique_ptr<Frame> frame_;
    std::unique_ptr<Workspace> workspace_;
    std::unique_ptr<DatabaseCommands> databases_;
    std::unique_ptr<FileCommands> files_;
    std::unique_ptr<CheckCommands> checks_;
    std::unique_ptr<ToolCommands> tools_;
    std::unique_ptr<ViewCommands> views_;
    std::unique_ptr<ScheduleCommands> schedule_;
    QTimer infoBars_;
    QTimer animation_;
    QTimer signals_;
    std::array<QIcon, 11> windowIcons_;  // drawn once
    int animationFrame_ = 0;
    QPointer<QWidget> help_;
    bool isStopped_ = false;
    bool isAnimated_ = false;
    std::string dataFolder_;
};

}  // namespace corvalence::gui
