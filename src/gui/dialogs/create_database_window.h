#pragma once

#include <QDialog>
#include <functional>

#include "gui/support/help.h"
#include "shell/modes.h"
#include "store/database_creation.h"

class QButtonGroup;
class QFormLayout;
class QLineEdit;

namespace corvalence::gui {

class FolderField;

/// Location, name and digest of a new database. OK makes it; where it is refused the window stays, so that
/// the fields can be filled in better.
class CreateDatabaseWindow : public QDialog {
  public:
    /// Makes the database; false where it was refused or given up, which was told by then. Throws
    /// base::FileFailure, which is told here.
    using Create = std::function<bool(const store::CreationRequest& request)>;

    /// Offers the folder for databases, and digests where the mode's databases hold any.
    CreateDatabaseWindow(store::Vault& vault, shell::Mode mode, Create create, const OpenHelp& openHelp,
                         QWidget* parent);

    void accept() override;

  private:
    void addFields(QFormLayout& form);
    void addDigests(QFormLayout& form);
    /// Nothing where the location is none, which is told.
    std::optional<store::CreationRequest> request();

    store::Vault& vault_;
    shell::Mode mode_;
    Create create_;
    FolderField* location_ = nullptr;
    QLineEdit* name_ = nullptr;
    QButtonGroup* digests_ = nullptr;
    bool isCreating_ = false;
};

}  // namespace corvalence::gui
