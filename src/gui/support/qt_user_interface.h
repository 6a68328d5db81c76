#pragma once

#include <QMessageBox>
#include <QPointer>
#include <functional>

#include "gui/support/progress_window.h"
#include "platform/user_interface.h"

namespace corvalence::gui {

/// Speaks to the user in message boxes and progress windows, above whatever window is in front.
class QtUserInterface : public platform::UserInterface {
  public:
    /// Where texts of the status panes go; nowhere until it is set.
    std::function<void(int pane, const std::string& text)> showStatus;
    /// Nobody is there: messages stay until somebody comes, and work goes on; questions get the answer for
    /// that case.
    std::function<bool()> isUnattended = [] { return false; };
    /// What progress windows call the type of a file.
    TypeText typeText = [](std::string_view) { return std::string(); };
    /// The program is to end: all work is cancelled.
    std::function<bool()> isEnding = [] { return false; };

    void message(platform::Icon icon, const std::string& text) override;
    bool ask(platform::Icon icon, const std::string& text, bool unattended) override;
    std::unique_ptr<platform::Progress> openProgress(const std::string& title) override;
    void status(int pane, const std::string& text) override;

  private:
    void leaveMessage(platform::Icon icon, const std::string& text);

    QPointer<QMessageBox> left_;
};

/// The window that a new dialog is to lie on: the modal one in front, else the active one; null before there
/// is any.
QWidget* frontWindow();

}  // namespace corvalence::gui
