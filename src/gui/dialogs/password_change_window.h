#pragma once

#include <QDialog>
#include <array>

#include "core/password_change.h"
#include "gui/support/help.h"

class QFormLayout;
class QLineEdit;

namespace corvalence::gui {

/// "Password details. ": the current password, the new one and its confirmation.
class PasswordChangeWindow : public QDialog {
  public:
    /// Shows the fields as they are in `entry`.
    PasswordChangeWindow(const core::PasswordEntry& entry, const OpenHelp& openHelp, QWidget* parent);
    ~PasswordChangeWindow() override;

    /// Moves the fields into `entry`; those of the window are overwritten.
    void take(core::PasswordEntry& entry);

  private:
    QLineEdit* addField(QFormLayout& form, const char* label, const char* name,
                        const crypto::SecretText& text);

    std::array<QLineEdit*, 3> fields_{};
};

/// Asks in such a window, above whatever window is in front.
class PasswordChangePrompt : public core::PasswordChangeDialog {
  public:
    explicit PasswordChangePrompt(OpenHelp openHelp) : openHelp_(std::move(openHelp)) {}

    bool show(core::PasswordEntry& entry) override;
    std::optional<std::string> selectReport() override;

  private:
    OpenHelp openHelp_;
};

}  // namespace corvalence::gui
