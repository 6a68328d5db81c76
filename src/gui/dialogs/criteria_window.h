#pragma once

#include <QDialog>
#include <vector>

#include "files/add_pipeline.h"
#include "files/remove_pipeline.h"
#include "gui/dialogs/criteria_commands.h"
#include "gui/support/help.h"

class QButtonGroup;
class QCheckBox;
class QVBoxLayout;

namespace corvalence::gui {

class CriteriaGroupBox;
class FolderField;

/// Adds files to the open database, or removes them, by what is filled in. OK does it; the window stays where
/// something is filled in wrong, the search is cancelled or the user does not go on.
class CriteriaWindow : public QDialog {
  public:
    CriteriaWindow(store::Vault& vault, store::OpenDatabaseContext& database, const CriteriaCommand& command,
                   const OpenHelp& openHelp, QWidget* parent);

    /// What came of it, once the window was accepted; their texts are still to be told.
    const std::optional<files::AddReport>& added() const noexcept { return added_; }
    const std::optional<files::RemoveReport>& removed() const noexcept { return removed_; }

    void accept() override;

  private:
    void addGroups(QVBoxLayout& layout);
    void addLocation(QVBoxLayout& layout);
    void addNotifyBoxes(QVBoxLayout& layout);
    files::CriteriaForm form() const;
    std::optional<files::FormFault> findFault(const files::CriteriaForm& form) const;
    void showFault(const files::FormFault& fault);
    bool add(const files::CriteriaForm& form);
    bool remove(const files::CriteriaForm& form);

    store::Vault& vault_;
    store::OpenDatabaseContext& database_;
    const CriteriaCommand& command_;
    std::vector<CriteriaGroupBox*> groups_;
    FolderField* location_ = nullptr;
    QCheckBox* notifyListed_ = nullptr;
    QCheckBox* notifyFailed_ = nullptr;
    std::optional<files::AddReport> added_;
    std::optional<files::RemoveReport> removed_;
    bool isAtWork_ = false;
};

/// "Add all files to a database.": from every drive, with backups or without.
class AddAllWindow : public QDialog {
  public:
    AddAllWindow(store::Vault& vault, store::OpenDatabaseContext& database, const OpenHelp& openHelp,
                 QWidget* parent);

    const std::optional<files::AddReport>& added() const noexcept { return added_; }

    void accept() override;

  private:
    store::Vault& vault_;
    store::OpenDatabaseContext& database_;
    QButtonGroup* backups_ = nullptr;
    QCheckBox* notifyFailed_ = nullptr;
    std::optional<files::AddReport> added_;
    bool isAtWork_ = false;
};

}  // namespace corvalence::gui
