#pragma once

#include <QMainWindow>
#include <functional>
#include <map>

#include "gui/command_actions.h"
#include "shell/info_bars.h"

class QLabel;
class QStackedWidget;
class QToolBar;

namespace corvalence::gui {

class EmptyView;
class InfoBar;
class ListTable;
class PageBar;

/// The main window: menus and tool bars made from the commands, one view at a time, the info bars and the two
/// status panes. It shows what it is told and decides nothing.
class Frame : public QMainWindow {
  public:
    Frame();
    ~Frame() override;

    CommandActions& actions() noexcept { return actions_; }
    /// Menu of the recently opened databases, filled by whoever knows them when it is about to show.
    QMenu& recentMenu() noexcept { return *recentMenu_; }

    /// Asked before the window closes; false keeps it.
    std::function<bool()> mayClose = [] { return true; };
    /// The window has been painted for the first time.
    std::function<void()> firstPaint = [] {};

    /// Title, menus and pressed button of the mode, and what the commands can do.
    void update(const shell::FrameState& state);
    void showEmpty(shell::Mode mode, const std::string& database);
    /// Takes the place of what is in view, and owns it from now on.
    void showView(QWidget* view);
    QWidget* view() const;

    /// Fills the menu of a list of files.
    void fillListMenu(QMenu& menu, ListTable& list);

    void setStatus(int pane, const std::string& text);
    /// Of the Page bar; "Page: 2 of 5", or nothing.
    void setPage(const std::string& caption, bool hasPrevious, bool hasNext);
    std::function<void()> onPreviousPage = [] {};
    std::function<void()> onNextPage = [] {};
    void setInfo(shell::Command bar, const shell::InfoBarContent& content);
    bool isBarShown(shell::Command bar) const;

    // What is remembered of the window between two runs: sizes, positions and which bars are shown.
    QByteArray layout() const;
    /// False where the text is none of layout(); everything is then as at first.
    bool restoreLayout(const QByteArray& layout);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void addMenus();
    void addToolBars();
    void addInfoBars();
    void addStatusPanes();
    void bindToggles();
    void showToolBars();
    void useLargeButtons(bool isLarge);
    void setIndicator(const char* picture, std::string_view text);

    CommandActions actions_;
    std::map<shell::Menu, QMenu*> menus_;
    std::map<shell::Command, QToolBar*> toolBars_;
    std::map<shell::Command, InfoBar*> infoBars_;
    PageBar* pageBar_ = nullptr;
    QToolBar* infoRow_ = nullptr;
    std::map<shell::Command, QAction*> infoActions_;
    QMenu* recentMenu_ = nullptr;
    QStackedWidget* views_;
    EmptyView* empty_;
    QLabel* work_ = nullptr;       // pane 0
    QLabel* database_ = nullptr;   // pane 1
    QLabel* indicator_ = nullptr;  // whether the database has passed its self check
    shell::Mode mode_ = shell::Mode::FileContents;
    bool isPainted_ = false;
};

}  // namespace corvalence::gui
