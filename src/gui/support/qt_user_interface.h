#pragma once

#include <functional>

#include "platform/user_interface.h"

class QWidget;

namespace corvalence::gui {

/// Speaks to the user in message boxes and progress windows, above whatever window is in front.
class QtUserInterface : public platform::UserInterface {
  public:
    /// Where texts of the status panes go; nowhere until it is set.
    std::function<void(int pane, const std::string& text)> showStatus;

    void message(platform::Icon icon, const std::string& text) override;
    bool ask(platform::Icon icon, const std::string& text, bool unattended) override;
    std::unique_ptr<platform::Progress> openProgress(const std::string& title) override;
    void status(int pane, const std::string& text) override;
};

/// The window that a new dialog is to lie on: the modal one in front, else the active one; null before there
/// is any.
QWidget* frontWindow();

}  // namespace corvalence::gui
