#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "components/complete_system.h"
#include "gui/support/help.h"

class QButtonGroup;
class QCheckBox;

namespace corvalence::gui {

/// "Create Complete System Database.": whether its files are backed up. OK makes the database; where the user
/// declines to make it without backups the window stays for another choice.
class CompleteSystemWindow : public QDialog {
  public:
    /// Makes the database; false where another choice is to be made. Throws base::FileFailure, which is told
    /// here.
    using Create = std::function<bool(const components::SystemCreationOptions& options)>;

    CompleteSystemWindow(platform::UserInterface& ui, Create create, const OpenHelp& openHelp,
                         QWidget* parent);

    void accept() override;

  private:
    components::SystemCreationOptions options() const;

    platform::UserInterface& ui_;
    Create create_;
    QButtonGroup* backups_ = nullptr;
    QCheckBox* notify_ = nullptr;
    bool isCreating_ = false;
};

/// "Directory Structure.", as the components are listed for the user.
QString componentText(reports::ReportKind component);

/// "Scan selection.": which components of a Complete System are checked; all of them at first.
class ScanSelectionWindow : public QDialog {
  public:
    ScanSelectionWindow(const OpenHelp& openHelp, QWidget* parent);

    /// In the order in which they are checked.
    std::vector<reports::ReportKind> selection() const;

  private:
    std::vector<QCheckBox*> boxes_;
};

}  // namespace corvalence::gui
