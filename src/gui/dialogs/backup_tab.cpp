#include "gui/dialogs/backup_tab.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QPushButton>
#include <QVBoxLayout>

namespace corvalence::gui {

BackupTab::BackupTab(const shell::BackupPage& page, const base::PathRules& paths, const OpenHelp& openHelp)
    : SheetTab(QStringLiteral("Copies of databases and of the files that they list"),
               QStringLiteral("mode-file-contents"), openHelp, QStringLiteral("configbackup")),
      paths_(paths),
      stored_(page),
      storedFolder_(page.folder) {
    addDatabases();
    addFiles();
    showUsable();
}

void BackupTab::addDatabases() {
    QVBoxLayout& group = addGroup(QStringLiteral("Databases"));
    databases_ = addBox(group, "backupDatabasesBox", QStringLiteral("Backup &each database."),
                        stored_.backsUpDatabases);
    suffix_ = new QLineEdit(shown(stored_.suffix), this);
    suffix_->setMaxLength(1);
    suffix_->setMaximumWidth(suffix_->fontMetrics().averageCharWidth() * 8);
    addText(group, suffix_, "suffixEdit", QStringLiteral("C&haracter to append to the database name:"));
    static_cast<QBoxLayout*>(group.itemAt(group.count() - 1)->layout())->addStretch();
    beside_ = addBox(group, "besideBox", QStringLiteral("&Same as database."), stored_.besideDatabase);
    folder_ = new PathEdit(this);
    folder_->setPath(stored_.folder);
    browse_ = addBrowsed(group, folder_, "locationEdit", QStringLiteral("&Location for backup database:"),
                         "locationButton", QStringLiteral("&Browse"));
    connect(databases_, &QCheckBox::toggled, this, [this] { showUsable(); });
    connect(beside_, &QCheckBox::toggled, this, [this](bool isBeside) {
        if (isBeside) folder_->setPath(storedFolder_);
        showUsable();
    });
    connect(browse_, &QPushButton::clicked, this, [this] { browse(); });
}

void BackupTab::addFiles() {
    QVBoxLayout& group = addGroup(QStringLiteral("Files"));
    files_ = addBox(
        group, "backupFilesBox",
        QStringLiteral("Backup the &files listed in each database [for possible subsequent restoration]."),
        stored_.backsUpFiles);
    encrypts_ = addBox(group, "encryptBox", QStringLiteral("Enc&rypt the backup files. [ 256 bit AES ]."),
                       stored_.encrypts);
    connect(files_, &QCheckBox::toggled, this, [this] { showUsable(); });
}

void BackupTab::browse() {
    const QString chosen = QFileDialog::getExistingDirectory(this, {}, folder_->text());
    const std::string folder = chosenPath(chosen);
    if (shell::BackupPage::takesFolder(folder, paths_)) folder_->setPath(folder);
}

void BackupTab::showUsable() {
    const shell::BackupPage now = page();
    suffix_->setEnabled(now.canSetSuffix());
    beside_->setEnabled(now.canSetBesideDatabase());
    folder_->setEnabled(now.canSetFolder());
    browse_->setEnabled(now.canSetFolder());
    encrypts_->setEnabled(now.canSetEncrypts());
}

shell::BackupPage BackupTab::page() const {
    return {databases_->isChecked(), bytesOf(suffix_->text()), beside_->isChecked(),
            folder_->path(),         files_->isChecked(),      encrypts_->isChecked()};
}

}  // namespace corvalence::gui
