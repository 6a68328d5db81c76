#pragma once

#include <QDialog>
#include <vector>

#include "gui/support/help.h"
#include "shell/modes.h"
#include "store/database_deletion.h"
#include "store/vault.h"

class QDialogButtonBox;
class QPushButton;
class QTreeWidget;

namespace corvalence::gui {

/// The databases of a mode, one of which is to be opened; any of them can be deleted here.
class OpenDatabaseWindow : public QDialog {
  public:
    /// `listener` is told of databases that are deleted. Throws base::FileFailure where the index cannot be
    /// read.
    OpenDatabaseWindow(store::Vault& vault, shell::Mode mode, store::DeletionListener& listener,
                       const OpenHelp& openHelp, QWidget* parent);

    /// What is to be opened, once the window was accepted: the path of a listed database, or one that was
    /// chosen as a file.
    const std::string& path() const noexcept { return path_; }

    void accept() override;

  private:
    void addList();
    void addButtons(const OpenHelp& openHelp);
    /// Reads the index anew.
    void fill();
    void enableButtons();
    const store::IndexRecord* selected() const;
    void browse();
    void deleteSelected();

    store::Vault& vault_;
    shell::Mode mode_;
    store::DeletionListener& listener_;
    std::vector<store::IndexRecord> records_;
    std::string path_;
    QTreeWidget* list_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
    QPushButton* delete_ = nullptr;
};

}  // namespace corvalence::gui
