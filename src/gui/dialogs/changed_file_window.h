#pragma once

#include <QDialog>
#include <functional>

#include "files/check.h"
#include "gui/support/help.h"
#include "store/vault.h"

class QButtonGroup;
class QVBoxLayout;

namespace corvalence::gui {

/// "Changed file details.": what a changed file was and is, and what is to be done about it. Leaving it means
/// to ignore the change.
class ChangedFileWindow : public QDialog {
  public:
    /// Opens the file's comparison with its backup above this window.
    using Analyse = std::function<void(QWidget* parent)>;

    ChangedFileWindow(const files::ChangedFileDetails& details, platform::Clock& clock,
                      const Analyse& analyse, const OpenHelp& openHelp, QWidget* parent);

    files::Reaction reaction() const;

  private:
    void addDetails(QVBoxLayout& layout, const files::ChangedFileDetails& details, platform::Clock& clock);
    void addReactions(QVBoxLayout& layout, bool onlyIgnore);
    void addButtons(QVBoxLayout& layout, const Analyse& analyse, const OpenHelp& openHelp);

    QButtonGroup* reactions_ = nullptr;
};

/// "File restore from backup.": what becomes of the changed file.
class FileRestoreWindow : public QDialog {
  public:
    FileRestoreWindow(const std::string& path, const OpenHelp& openHelp, QWidget* parent);

    files::RestoreChoice choice() const;

  private:
    QButtonGroup* choices_ = nullptr;
};

/// Asks about each changed file of a check in these windows, above whatever window is in front.
class ChangedFilePrompt : public files::ChangedFileDetailsDialog {
  public:
    ChangedFilePrompt(store::Vault& vault, const store::OpenDatabaseContext& database,
                      const OpenHelp& openHelp)
        : vault_(vault), database_(database), openHelp_(openHelp) {}

    files::Reaction show(const files::ChangedFileDetails& details) override;
    std::optional<files::RestoreChoice> showRestore(const std::string& path) override;
    bool attended() const override { return true; }

  private:
    store::Vault& vault_;
    const store::OpenDatabaseContext& database_;
    OpenHelp openHelp_;
};

}  // namespace corvalence::gui
