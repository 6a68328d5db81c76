#include "gui/dialogs/different_password_window.h"

#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "gui/dialogs/masked_edit.h"
#include "gui/support/dialog_buttons.h"

namespace corvalence::gui {

DifferentPasswordWindow::DifferentPasswordWindow(const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("differentPasswordWindow"));
    setWindowTitle(QStringLiteral("Different Log Password."));
    auto* layout = new QVBoxLayout(this);
    auto* group = new QGroupBox(
        QStringLiteral("Enter the altenative password that the log file was encrypted with:"), this);
    auto* row = new QHBoxLayout(group);
    password_ = new MaskedEdit(group);
    password_->setObjectName(QStringLiteral("passwordEdit"));
    password_->setMinimumWidth(password_->fontMetrics().averageCharWidth() * 40);
    auto* label = new QLabel(QStringLiteral("Alternative &password:"), group);
    label->setBuddy(password_);
    row->addWidget(label);
    row->addWidget(password_, 1);
    layout->addWidget(group);
    layout->addWidget(makeButtons(*this,
                                  QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help,
                                  openHelp, QStringLiteral("differentpassword")));
    layout->setSizeConstraint(QLayout::SetFixedSize);
    password_->setFocus();
}

crypto::SecretText DifferentPasswordWindow::takePassword() {
    crypto::SecretText password = password_->entry().take();
    password_->startAgain();
    return password;
}

}  // namespace corvalence::gui
