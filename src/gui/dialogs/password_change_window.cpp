#include "gui/dialogs/password_change_window.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "gui/support/dialog_buttons.h"
#include "gui/support/qt_user_interface.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

/// The field's text, overwritten where the field holds it.
crypto::SecretText takeText(QLineEdit& field) {
    crypto::SecretText secret;
    {
        const QString text = field.text();
        std::string bytes = bytesOf(text);
        secret.append(bytes);
        crypto::secureZero(bytes.data(), bytes.size());
        // The text shares its memory with the field, so that this reaches the field's own.
        if (!text.isEmpty()) {
            crypto::secureZero(const_cast<QChar*>(text.constData()),
                               static_cast<std::size_t>(text.size()) * sizeof(QChar));
        }
    }
    field.clear();
    return secret;
}

}  // namespace

PasswordChangeWindow::PasswordChangeWindow(const core::PasswordEntry& entry, const OpenHelp& openHelp,
                                           QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("passwordChangeWindow"));
    setWindowTitle(QStringLiteral("Password details. "));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    fields_ = {addField(*form, "C&urrent password:", "currentEdit", entry.current),
               addField(*form, "&New password:", "newEdit", entry.chosen),
               addField(*form, "Con&firmation:", "confirmationEdit", entry.confirmation)};
    layout->addLayout(form);
    auto* warning = new QLabel(shown(core::kPasswordChangeWarning), this);
    warning->setObjectName(QStringLiteral("warningLabel"));
    warning->setWordWrap(true);
    layout->addWidget(warning);
    layout->addWidget(makeButtons(*this,
                                  QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help,
                                  openHelp, QStringLiteral("passwordchange")));
    for (QLineEdit* field : fields_) {
        if (!field->text().isEmpty()) continue;
        field->setFocus();
        break;
    }
}

PasswordChangeWindow::~PasswordChangeWindow() {
    for (QLineEdit* field : fields_)
        takeText(*field);
}

QLineEdit* PasswordChangeWindow::addField(QFormLayout& form, const char* label, const char* name,
                                          const crypto::SecretText& text) {
    auto* field = new QLineEdit(this);
    field->setObjectName(QLatin1String(name));
    field->setEchoMode(QLineEdit::Password);
    field->setMaxLength(static_cast<int>(core::kPasswordLimit));
    field->setMinimumWidth(field->fontMetrics().averageCharWidth() * 40);
    field->setText(QString::fromUtf8(text.view().data(), static_cast<qsizetype>(text.view().size())));
    form.addRow(QLatin1String(label), field);
    return field;
}

void PasswordChangeWindow::take(core::PasswordEntry& entry) {
    entry.current = takeText(*fields_[0]);
    entry.chosen = takeText(*fields_[1]);
    entry.confirmation = takeText(*fields_[2]);
}

bool PasswordChangePrompt::show(core::PasswordEntry& entry) {
    PasswordChangeWindow window(entry, openHelp_, frontWindow());
    if (window.exec() != QDialog::Accepted) return false;
    window.take(entry);
    return true;
}

std::optional<std::string> PasswordChangePrompt::selectReport() {
    const QString file = QFileDialog::getOpenFileName(frontWindow(), QStringLiteral("Select a report file."));
    if (file.isEmpty()) return std::nullopt;
    return chosenPath(file);
}

}  // namespace corvalence::gui
