#pragma once

#include <QDialog>

#include "gui/support/help.h"
#include "store/vault.h"

class QButtonGroup;
class QCheckBox;
class QLineEdit;
class QVBoxLayout;

namespace corvalence::gui {

class IntervalFields;

/// "Schedule database checking.": puts one database into the schedule, with OK.
class SingleScheduleWindow : public QDialog {
  public:
    /// `database`: full path of the open one; "Browse" chooses another.
    SingleScheduleWindow(store::Vault& vault, std::string database, const OpenHelp& openHelp,
                         QWidget* parent = nullptr);

    /// Whether the main window is to be minimised, now that the window was left with OK.
    bool runsMinimized() const;

    /// Stays open where the database is not one of the index, or the schedule cannot be written; told.
    void accept() override;

  private:
    void addDatabase(QVBoxLayout& layout);
    void addFields(QVBoxLayout& layout);
    void browse();

    store::Vault& vault_;
    std::string database_;
    QLineEdit* path_ = nullptr;
    IntervalFields* interval_ = nullptr;
    QButtonGroup* reaction_ = nullptr;
    QCheckBox* minimized_ = nullptr;
};

}  // namespace corvalence::gui
