#pragma once

#include <optional>
#include <string>
#include <vector>

#include "schedule/schedule_list.h"
#include "schedule/schedule_settings.h"

namespace corvalence::schedule {

/// One scheduled database as the dialog lists it.
struct ScheduleRow {
    std::string name;       // file name
    std::string location;   // full path
    std::string lastCheck;  // "09:05:07   3.11.2004", or "Unchecked"
    std::optional<base::FileTime> checkedAt;
};

enum class AddToSchedule { NothingEntered, NotValid, EmptyDatabase, Listed, Added };

/// What the dialog "Database checking schedule." knows and does, without a window. Its messages go to the
/// vault's user. All calls throw base::FileFailure; the list is then as it was.
class ScheduleDialog {
  public:
    /// Opens it: entries and rows are filled, the settings read.
    explicit ScheduleDialog(store::Vault& vault);

    const std::vector<std::string>& entries() const noexcept { return entries_; }  // of the combo box
    const std::vector<ScheduleRow>& rows() const noexcept { return rows_; }
    /// Lines of the list that name no database.
    const std::vector<std::string>& damaged() const noexcept { return damaged_; }
    bool isTorn() const noexcept { return isTorn_; }
    /// There is no list; add() begins one.
    bool isMissing() const noexcept { return isMissing_; }

    /// Fields that the user changes; stored by store().
    ScheduleSettings settings;

    /// The button "Add" with the combo box's text.
    AddToSchedule add(const std::string& text);
    /// The button "Remove" with the numbers of the selected rows. The paths that were taken out, those of
    /// longer paths with the same beginning included.
    std::vector<std::string> remove(const std::vector<std::size_t>& selected);
    /// Takes damaged lines out of the list.
    std::vector<std::string> dropDamaged();
    /// Closes it: stores the settings. False where a key could not be written, or the interval is beyond the
    /// fields' limits, which is told and writes nothing.
    bool store();

  private:
    void fill();

    store::Vault& vault_;
    ScheduleList list_;
    std::vector<std::string> entries_;
    std::vector<ScheduleRow> rows_;
    std::vector<std::string> damaged_;
    bool isTorn_ = false;
    bool isMissing_ = false;
};

/// What the dialog "Schedule database checking." does with its fields for the open database: puts it into the
/// list with an interval and a letter of its own. Throws base::FileFailure.
void scheduleDatabase(store::Vault& vault, const std::string& database, const CheckInterval& interval,
                      CheckReaction reaction);

}  // namespace corvalence::schedule
