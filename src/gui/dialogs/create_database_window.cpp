#include "gui/dialogs/create_database_window.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "files/criteria_form.h"
#include "gui/dialogs/folder_field.h"
#include "gui/dialogs/radio_column.h"
#include "gui/support/dialog_buttons.h"

namespace corvalence::gui {

CreateDatabaseWindow::CreateDatabaseWindow(store::Vault& vault, shell::Mode mode, Create create,
                                           const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent), vault_(vault), mode_(mode), create_(std::move(create)) {
    setObjectName(QStringLiteral("createDatabaseWindow"));
    setWindowTitle(QStringLiteral("Create a Database"));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    addFields(*form);
    if (mode == shell::Mode::FileContents || mode == shell::Mode::CompleteSystem) addDigests(*form);
    layout->addLayout(form);
    layout->addStretch(1);
    layout->addWidget(makeButtons(*this,
                                  QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help,
                                  openHelp, QStringLiteral("createdatabase")));
    name_->setFocus();
}

void CreateDatabaseWindow::addFields(QFormLayout& form) {
    location_ = new FolderField(vault_.platform.paths.separator, false, this);
    try {
        location_->setText(vault_.configuration.folder(settings::key::kInstallDirectory) + "Databases");
    } catch (const base::FileFailure&) {
        // Without the key there is nothing to offer.
    }
    name_ = new QLineEdit(this);
    name_->setObjectName(QStringLiteral("nameEdit"));
    form.addRow(QStringLiteral("&Location:"), location_);
    form.addRow(QStringLiteral("&Name:"), name_);
}

void CreateDatabaseWindow::addDigests(QFormLayout& form) {
    auto* column = new QVBoxLayout;
    const auto textOf = [](const crypto::DigestKind& kind) { return kind.name; };
    const int fallback = static_cast<char>(crypto::DigestCode::Sha256) - '0';
    digests_ = addRadioButtons(*column, *this, "digestButton", crypto::kDigestKinds, textOf, fallback);
    form.addRow(QStringLiteral("Digest value:"), column);
}

std::optional<store::CreationRequest> CreateDatabaseWindow::request() {
    const base::PathRules& paths = vault_.platform.paths;
    const std::string typed = location_->text();
    const auto location = files::fullFolderPath(typed, paths);
    if (!location) {
        vault_.platform.ui.message(platform::Icon::Stop, typed + "  is not a valid location.");
        return std::nullopt;
    }
    store::CreationRequest request{*location, bytesOf(name_->text()), shell::modeRow(mode_).kind};
    if (digests_ != nullptr)
        request.digest = crypto::kDigestKinds[static_cast<std::size_t>(digests_->checkedId())].code;
    return request;
}

void CreateDatabaseWindow::accept() {
    // The window is there while the database is made, and Enter comes to it between two boxes.
    if (isCreating_) return;
    const auto wanted = request();
    if (!wanted) {
        location_->setFocus();
        return;
    }
    isCreating_ = true;
    bool isDone = false;
    try {
        isDone = create_(*wanted);
    } catch (const std::exception& failure) {
        vault_.platform.ui.message(platform::Icon::Stop, failure.what());
    }
    isCreating_ = false;
    if (isDone) {
        QDialog::accept();
        return;
    }
    if (store::hasForbidden(wanted->name)) name_->clear();
    name_->setFocus();
}

}  // namespace corvalence::gui
