#include "gui/dialogs/password_window.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/dialogs/masked_edit.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/icons.h"

namespace corvalence::gui {

namespace {

constexpr int kPictureSize = 96;
constexpr int kNameScale = 2;  // of the product's name to the other texts

QPushButton* addButton(QDialogButtonBox& box, const QString& text, QDialogButtonBox::ButtonRole role,
                       const char* name) {
    QPushButton* button = box.addButton(text, role);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

}  // namespace

PasswordWindow::PasswordWindow(platform::Platform& platform, const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent), platform_(platform) {
    setObjectName(QStringLiteral("passwordWindow"));
    setWindowTitle(QStringLiteral("Corvalence"));
    setWindowIcon(icon(QStringLiteral("corvalence")));
    auto* layout = new QVBoxLayout(this);
    addHeader(*layout);
    addEntry(*layout);
    addButtons(*layout, openHelp);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void PasswordWindow::addHeader(QVBoxLayout& layout) {
    auto* picture = new QLabel(this);
    picture->setPixmap(
        icon(QStringLiteral("corvalence")).pixmap(QSize(kPictureSize, kPictureSize), devicePixelRatioF()));
    picture->setAlignment(Qt::AlignCenter);
    auto* name = new QLabel(QStringLiteral("Corvalence"), this);
    QFont font = name->font();
    font.setPointSizeF(font.pointSizeF() * kNameScale);
    font.setBold(true);
    name->setFont(font);
    name->setAlignment(Qt::AlignCenter);
    layout.addWidget(picture);
    layout.addWidget(name);
    layout.addSpacing(layout.spacing() * 2);
}

void PasswordWindow::addEntry(QVBoxLayout& layout) {
    choosing_ = new QLabel(QStringLiteral("                         CHOOSE ANY PASSWORD."), this);
    choosing_->setObjectName(QStringLiteral("choosingLabel"));
    password_ = new MaskedEdit(this);
    password_->setObjectName(QStringLiteral("passwordEdit"));
    password_->setMinimumWidth(password_->fontMetrics().averageCharWidth() * 50);
    auto* label = new QLabel(QStringLiteral("&Password:"), this);
    label->setBuddy(password_);
    layout.addWidget(choosing_);
    layout.addWidget(label);
    layout.addWidget(password_);
    layout.addSpacing(layout.spacing() * 2);
}

void PasswordWindow::addButtons(QVBoxLayout& layout, const OpenHelp& openHelp) {
    auto* box = new QDialogButtonBox(this);
    QPushButton* ok = addButton(*box, QStringLiteral("&OK"), QDialogButtonBox::AcceptRole, "okButton");
    ok->setDefault(true);
    addButton(*box, QStringLiteral("E&xit"), QDialogButtonBox::RejectRole, "exitButton");
    QPushButton* reset =
        addButton(*box, QStringLiteral("&Reset"), QDialogButtonBox::ResetRole, "resetButton");
    pressByHelpKey(*addButton(*box, QStringLiteral("&Help"), QDialogButtonBox::HelpRole, "helpButton"),
                   *this);
    connect(box, &QDialogButtonBox::accepted, this, &PasswordWindow::accept);
    connect(box, &QDialogButtonBox::rejected, this, &PasswordWindow::reject);
    connect(reset, &QPushButton::clicked, this, [this] { this->reset(); });
    connect(box, &QDialogButtonBox::helpRequested, this, [openHelp] {
        if (openHelp) openHelp(QStringLiteral("passwordscreen"));
    });
    layout.addWidget(box);
}

void PasswordWindow::prepare(bool choosing) {
    isChoosing_ = choosing;
    choosing_->setVisible(choosing);
    password_->startAgain();
    password_->setFocus();
}

crypto::SecretText PasswordWindow::takePassword() {
    crypto::SecretText password = password_->entry().take();
    password_->startAgain();
    return password;
}

void PasswordWindow::accept() {
    // Without a database any password is right, and Enter on the empty field would choose none for good.
    const bool isNone = isChoosing_ && password_->entry().text().empty();
    if (isNone && !platform_.ui.ask(platform::Icon::Warning,
                                    "No password was entered. Everything would be sealed with the empty "
                                    "password.\n\nWould you like to go on without a password?")) {
        password_->setFocus();
        return;
    }
    QDialog::accept();
}

void PasswordWindow::reset() {
    try {
        if (onReset && onReset()) prepare(true);
    } catch (const base::FileFailure& failure) {
        platform_.ui.message(platform::Icon::Stop, failure.what());
    }
    password_->setFocus();
}

std::optional<crypto::SecretText> PasswordPrompt::show(const core::PasswordQuestion& question) {
    window_.onReset = question.reset;
    window_.prepare(question.choosing);
    if (window_.exec() != QDialog::Accepted) {
        window_.prepare(question.choosing);  // what was typed is not kept
        return std::nullopt;
    }
    return window_.takePassword();
}

}  // namespace corvalence::gui
