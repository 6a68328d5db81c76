#include "schedule/schedule_round.h"

#include "schedule/schedule_list.h"
#include "store/database_index.h"

namespace corvalence::schedule {

namespace {

/// Nothing where the list cannot be read; why is told.
std::optional<ScheduleContent> readSchedule(store::Vault& vault) {
    platform::UserInterface& ui = vault.platform.ui;
    try {
        ScheduleContent content = ScheduleList(vault).read();
        if (content.isDamaged())
            ui.message(platform::Icon::Warning,
                       "The checking schedule is damaged: not every line of it counts.");
        return content;
    } catch (const base::FileFailure& failure) {
        ui.message(platform::Icon::Stop, failure.what());
        return std::nullopt;
    }
}

}  // namespace

void visitSchedule(const WorkContext& context, Timer tick, const PromptedCheck& prompted,
                   const std::function<bool()>& goesOn) {
    const auto schedule = readSchedule(context.vault);
    if (!schedule) return;
    for (const std::string& database : schedule->databases) {
        if (!goesOn()) return;
        const auto record = store::DatabaseIndex(context.vault).findExact(database);
        const bool listsFiles = !record || record->kind == store::DatabaseKind::Numbered;
        if (tick == Timer::StandardTick && listsFiles && prompted) {
            prompted(database);
        } else {
            CheckWorker(context).run(database, record);
        }
    }
}

}  // namespace corvalence::schedule
