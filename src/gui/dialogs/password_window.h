#pragma once

#include <QDialog>
#include <functional>

#include "core/password_stage.h"
#include "gui/support/help.h"
#include "platform/platform.h"

class QLabel;
class QVBoxLayout;

namespace corvalence::gui {

class MaskedEdit;

/// The first window of the program: asks for the password. It stays one window however often it is shown.
class PasswordWindow : public QDialog {
  public:
    PasswordWindow(platform::Platform& platform, const OpenHelp& openHelp, QWidget* parent = nullptr);

    /// Empties the field. `choosing`: the password given now is the one of this installation.
    void prepare(bool choosing);
    /// What the reset button does: false where the user said no. Throws base::FileFailure.
    std::function<bool()> onReset;
    /// What was entered; the field is empty afterwards.
    crypto::SecretText takePassword();

    /// Asks first where a password is chosen and none was entered.
    void accept() override;

  private:
    void addHeader(QVBoxLayout& layout);
    void addEntry(QVBoxLayout& layout);
    void addButtons(QVBoxLayout& layout, const OpenHelp& openHelp);
    void reset();

    platform::Platform& platform_;
    bool isChoosing_ = false;
    QLabel* choosing_ = nullptr;
    MaskedEdit* password_ = nullptr;
};

/// Asks in that window.
class PasswordPrompt : public core::PasswordDialog {
  public:
    explicit PasswordPrompt(PasswordWindow& window) : window_(window) {}
    std::optional<crypto::SecretText> show(const core::PasswordQuestion& question) override;

  private:
    PasswordWindow& window_;
};

}  // namespace corvalence::gui
