#pragma once

#include "base/path_rules.h"
#include "gui/dialogs/path_edit.h"
#include "gui/dialogs/sheet_tab.h"

namespace corvalence::gui {

/// "Backup.": backup databases, and backups of files.
class BackupTab : public SheetTab {
  public:
    BackupTab(const shell::BackupPage& page, const base::PathRules& paths, const OpenHelp& openHelp);

    shell::BackupPage page() const;
    /// What the location goes back to with "Same as database."; first it is that of the page.
    void setStoredFolder(const std::string& folder) { storedFolder_ = folder; }

  private:
    void addDatabases();
    void addFiles();
    void browse();
    void showUsable();

    const base::PathRules& paths_;
    const shell::BackupPage stored_;
    std::string storedFolder_;
    QCheckBox* databases_ = nullptr;
    QLineEdit* suffix_ = nullptr;
    QCheckBox* beside_ = nullptr;
    PathEdit* folder_ = nullptr;
    QPushButton* browse_ = nullptr;
    QCheckBox* files_ = nullptr;
    QCheckBox* encrypts_ = nullptr;
};

}  // namespace corvalence::gui
