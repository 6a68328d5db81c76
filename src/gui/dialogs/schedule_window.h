#pragma once

#include <QDialog>
#include <functional>

#include "gui/support/help.h"
#include "platform/user_interface.h"
#include "schedule/schedule_dialog.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace corvalence::gui {

class IntervalFields;
class ListTable;
class ScheduleModel;

/// "Database checking schedule.": which databases are checked by the clock, how often, and what a check does.
/// The list changes with each Add and Remove; the other fields are stored with OK.
class ScheduleWindow : public QDialog {
  public:
    ScheduleWindow(schedule::ScheduleDialog& dialog, platform::UserInterface& ui, const OpenHelp& openHelp,
                   QWidget* parent = nullptr);

    void accept() override;

  protected:
    /// Enter in the field of "Add Database" adds.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addList(QVBoxLayout& layout);
    void addEntry(QVBoxLayout& layout);
    void addInterval(QVBoxLayout& layout);
    void addReaction(QVBoxLayout& layout);
    void refill();
    /// Takes the fields over, and shows which of them can be used then.
    void takeFields();
    void addDatabase();
    void removeSelected();
    /// Does something to the list and shows it again; tells where that failed.
    void change(const std::function<void()>& act);

    schedule::ScheduleDialog& dialog_;
    platform::UserInterface& ui_;
    ScheduleModel* model_ = nullptr;
    ListTable* list_ = nullptr;
    QLabel* damage_ = nullptr;
    QPushButton* drop_ = nullptr;
    QComboBox* entry_ = nullptr;
    IntervalFields* interval_ = nullptr;
    QButtonGroup* reaction_ = nullptr;
    QCheckBox* restore_ = nullptr;
    QButtonGroup* changed_ = nullptr;
};

}  // namespace corvalence::gui
