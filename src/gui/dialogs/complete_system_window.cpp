#include "gui/dialogs/complete_system_window.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include "gui/dialogs/backup_choices.h"
#include "gui/dialogs/radio_column.h"
#include "gui/support/dialog_buttons.h"

namespace corvalence::gui {

namespace {

struct ComponentBox {
    reports::ReportKind kind;
    const char* text;
};

constexpr ComponentBox kComponents[] = {
    {reports::ReportKind::FileContents, "&File Contents."},
    {reports::ReportKind::DirectoryStructure, "&Directory Structure."},
    {reports::ReportKind::Permissions, "&Permissions."},
    {reports::ReportKind::Registry, "&Registry."},
    {reports::ReportKind::Services, "&Services."},
};

constexpr auto kButtons = QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help;

}  // namespace

CompleteSystemWindow::CompleteSystemWindow(platform::UserInterface& ui, Create create,
                                           const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent), ui_(ui), create_(std::move(create)) {
    setObjectName(QStringLiteral("completeSystemWindow"));
    setWindowTitle(QStringLiteral("Create Complete System Database."));
    auto* layout = new QVBoxLayout(this);
    const auto textOf = [](const BackupChoice& choice) { return choice.text; };
    backups_ = addRadioButtons(*layout, *this, "backupButton", kSystemBackups, textOf, 0);
    notify_ = new QCheckBox(QStringLiteral("&Notify if files cannot be added."), this);
    notify_->setObjectName(QStringLiteral("notifyFailedBox"));
    layout->addWidget(notify_);
    layout->addStretch(1);
    layout->addWidget(makeButtons(*this, kButtons, openHelp, QStringLiteral("completesystem")));
}

components::SystemCreationOptions CompleteSystemWindow::options() const {
    const BackupChoice& choice = kSystemBackups[static_cast<std::size_t>(backups_->checkedId())];
    return {choice.backups, notify_->isChecked()};
}

void CompleteSystemWindow::accept() {
    if (isCreating_) return;
    isCreating_ = true;
    bool isDone = false;
    try {
        isDone = create_(options());
    } catch (const std::exception& failure) {
        ui_.message(platform::Icon::Stop, failure.what());
    }
    isCreating_ = false;
    if (isDone) QDialog::accept();
}

QString componentText(reports::ReportKind component) {
    return QString(QLatin1String(kComponents[static_cast<std::size_t>(component)].text))
        .remove(QLatin1Char('&'));
}

ScanSelectionWindow::ScanSelectionWindow(const OpenHelp& openHelp, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("scanSelectionWindow"));
    setWindowTitle(QStringLiteral("Scan selection."));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(
        QStringLiteral("Select The Components Of The Complete System Database To Be Checked:"), this));
    for (const ComponentBox& row : kComponents) {
        auto* box = new QCheckBox(QLatin1String(row.text), this);
        box->setObjectName(QStringLiteral("componentBox%1").arg(boxes_.size()));
        box->setChecked(true);
        layout->addWidget(box);
        boxes_.push_back(box);
    }
    layout->addStretch(1);
    layout->addWidget(makeButtons(*this, kButtons, openHelp, QStringLiteral("scanselection")));
}

std::vector<reports::ReportKind> ScanSelectionWindow::selection() const {
    std::vector<reports::ReportKind> selected;
    for (std::size_t i = 0; i < boxes_.size(); ++i)
        if (boxes_[i]->isChecked()) selected.push_back(kComponents[i].kind);
    return selected;
}

}  // namespace corvalence::gui
