#include "schedule/schedule_dialog.h"

#include <algorithm>

#include "platform/time_text.h"
#include "store/database_files.h"
#include "store/database_index.h"

namespace corvalence::schedule {

namespace {

constexpr std::string_view kUnchecked = "Unchecked";

/// By the first record that begins with the path, as the index is searched everywhere.
std::optional<base::FileTime> lastCheckOf(const base::PathRules& paths,
                                          const std::vector<store::IndexRecord>& records,
                                          const std::string& database) {
    const auto record = std::find_if(
        records.begin(), records.end(),
        [&](const store::IndexRecord& candidate) { return paths.beginsWith(candidate.path, database); });
    return record == records.end() ? std::nullopt : record->lastCheck;
}

bool isCompleteSystem(store::Vault& vault, const std::string& database) {
    const auto record = store::DatabaseIndex(vault).findExact(database);
    return record && store::isCompleteSystem(vault, *record);
}

}  // namespace

ScheduleDialog::ScheduleDialog(store::Vault& vault)
    : settings(ScheduleSettings::read(vault.configuration)), vault_(vault), list_(vault) {
    fill();
}

void ScheduleDialog::fill() {
    const auto records = store::DatabaseIndex(vault_).records();
    entries_.clear();
    for (const store::IndexRecord& record : records)
        entries_.push_back(record.path);
    isMissing_ = !vault_.platform.files.status(list_.path(), platform::Follow::Yes);
    ScheduleContent content = isMissing_ ? ScheduleContent{} : list_.read();
    rows_.clear();
    for (std::string& database : content.databases) {
        std::string name(vault_.platform.paths.fileName(database));
        const auto checkedAt = lastCheckOf(vault_.platform.paths, records, database);
        std::string lastCheck =
            checkedAt ? platform::formatFileTime(vault_.platform.clock, *checkedAt) : std::string(kUnchecked);
        rows_.push_back({std::move(name), std::move(database), std::move(lastCheck), checkedAt});
    }
    damaged_ = std::move(content.damaged);
    isTorn_ = content.isTorn;
}

AddToSchedule ScheduleDialog::add(const std::string& text) {
    platform::UserInterface& ui = vault_.platform.ui;
    if (text.empty()) return AddToSchedule::NothingEntered;
    if (std::find(entries_.begin(), entries_.end(), text) == entries_.end()) {
        ui.message(platform::Icon::Stop,
                   text + " is not a valid database. To show all valid databases use the drop down box.");
        return AddToSchedule::NotValid;
    }
    const auto status = vault_.platform.files.status(text, platform::Follow::Yes);
    if (status && status->size == 0) {
        ui.message(platform::Icon::Information, text + " is an empty database.");
        return AddToSchedule::EmptyDatabase;
    }
    if (!list_.add(text)) {
        ui.message(platform::Icon::Information, text + " previously listed in the schedule.");
        return AddToSchedule::Listed;
    }
    if (isCompleteSystem(vault_, text)) {
        ui.message(platform::Icon::Information,
                   text + " is a Complete System database. The schedule checks its File Contents.");
    }
    fill();
    return AddToSchedule::Added;
}

std::vector<std::string> ScheduleDialog::remove(const std::vector<std::size_t>& selected) {
    std::vector<std::string> removed;
    if (selected.empty()) {
        vault_.platform.ui.message(platform::Icon::Information, "Select a database from the list first.");
        return removed;
    }
    for (const std::size_t row : selected) {
        for (std::string& path : list_.remove(rows_.at(row).location))
            removed.push_back(std::move(path));
    }
    fill();
    return removed;
}

std::vector<std::string> ScheduleDialog::dropDamaged() {
    auto dropped = list_.dropDamaged();
    fill();
    return dropped;
}

bool ScheduleDialog::store() {
    if (settings.interval.isAllowed()) return settings.write(vault_.configuration);
    vault_.platform.ui.message(platform::Icon::Stop, "The interval may be no longer than 24:59:59.");
    return false;
}

void scheduleDatabase(store::Vault& vault, const std::string& database, const CheckInterval& interval,
                      CheckReaction reaction) {
    ScheduleList(vault).addTimed(database, static_cast<std::uint32_t>(interval.total().count()),
                                 reaction == CheckReaction::Continuous ? 'N' : 'P');
}

}  // namespace corvalence::schedule
