#pragma once

#include <QDialog>

#include "crypto/secret_text.h"
#include "gui/support/help.h"

namespace corvalence::gui {

class MaskedEdit;

/// "Different Log Password.": asks for the password that a log was sealed with.
class DifferentPasswordWindow : public QDialog {
  public:
    explicit DifferentPasswordWindow(const OpenHelp& openHelp, QWidget* parent = nullptr);

    /// What was entered; the field is empty afterwards.
    crypto::SecretText takePassword();

  private:
    MaskedEdit* password_ = nullptr;
};

}  // namespace corvalence::gui
