#include "gui/dialogs/email_tab.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace corvalence::gui {

EmailTab::EmailTab(const shell::EmailPage& page, bool sendsThroughServer, const OpenHelp& openHelp)
    : SheetTab(QStringLiteral("Mails about scheduled checks"), QStringLiteral("log-view"), openHelp,
               QStringLiteral("configemail")),
      stored_(page) {
    addMail();
    addServer(sendsThroughServer);
    connect(enabled_, &QCheckBox::toggled, this, [this] { showUsable(); });
    showUsable();
}

void EmailTab::addMail() {
    QVBoxLayout& group = addGroup(QStringLiteral("Notification"));
    enabled_ = addBox(group, "emailBox", QStringLiteral("&Enable Email notification."), stored_.isEnabled);
    auto* when = new QButtonGroup(this);
    auto* each =
        addRadio(group, "eachRadio", QStringLiteral("&Send Email after each scheduled database check."),
                 !stored_.onlyChanges);
    onlyChanges_ =
        addRadio(group, "changesRadio", QStringLiteral("Send Email only &when modifications are detected."),
                 stored_.onlyChanges);
    auto* form = new QButtonGroup(this);
    auto* plain = addRadio(group, "plainRadio", QStringLiteral("Send Checking Log as &plaintext Email."),
                           !stored_.encrypted);
    encrypted_ =
        addRadio(group, "encryptedRadio", QStringLiteral("Send Checking Log as encrypted Email a&ttachment."),
                 stored_.encrypted);
    for (QRadioButton* button : {each, onlyChanges_})
        when->addButton(button);
    for (QRadioButton* button : {plain, encrypted_})
        form->addButton(button);
    recipient_ = new QLineEdit(shown(stored_.recipient), this);
    addText(group, recipient_, "recipientEdit", QStringLiteral("&Recipient Email address: "));
    timeout_ = addNumber(group, "timeoutSpin", QStringLiteral("T&imeout:"), QStringLiteral("minutes"),
                         settings::key::kEmailTimeout, stored_.timeoutMinutes);
    fields_ = {each, onlyChanges_, plain, encrypted_, recipient_, timeout_};
}

void EmailTab::addServer(bool isShown) {
    QVBoxLayout& group = addGroup(QStringLiteral("Mail server"));
    static_cast<QGroupBox*>(group.parentWidget())->setVisible(isShown);
    server_ = new QLineEdit(shown(stored_.server), this);
    server_->setPlaceholderText(QStringLiteral("smtp://HOST or smtps://HOST, with :PORT"));
    addText(group, server_, "serverEdit", QStringLiteral("Ser&ver:"));
    tls_ = addBox(group, "tlsBox", QStringLiteral("Re&quire TLS"), stored_.requiresTls);
    sender_ = new QLineEdit(shown(stored_.sender), this);
    addText(group, sender_, "senderEdit", QStringLiteral("Sen&der address:"));
    login_ = new PathEdit(this);
    login_->setPath(stored_.loginFile);
    login_->setPlaceholderText(QStringLiteral("user and password, one a line; empty: no login"));
    addText(group, login_, "loginEdit", QStringLiteral("&Login file:"));
    authorities_ = new PathEdit(this);
    authorities_->setPath(stored_.authoritiesFile);
    authorities_->setPlaceholderText(QStringLiteral("certificates (PEM); empty: the system's"));
    addText(group, authorities_, "authoritiesEdit", QStringLiteral("Certificate a&uthorities:"));
    fields_.insert(fields_.end(), {server_, tls_, sender_, login_, authorities_});
}

void EmailTab::showUsable() {
    const bool isUsable = page().canSetFields();
    for (QWidget* field : fields_)
        field->setEnabled(isUsable);
}

shell::EmailPage EmailTab::page() const {
    return {enabled_->isChecked(),       onlyChanges_->isChecked(), encrypted_->isChecked(),
            bytesOf(recipient_->text()), timeout_->value(),         bytesOf(server_->text()),
            tls_->isChecked(),           bytesOf(sender_->text()),  login_->path(),
            authorities_->path()};
}

}  // namespace corvalence::gui
