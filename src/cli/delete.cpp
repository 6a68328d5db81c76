#include "cli/commands.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "core/database_lists.h"
#include "store/database_deletion.h"

namespace corvalence::cli {

ExitCode runDelete(Context& context, const DatabaseArguments& arguments) {
    const auto run = startRun(context);
    const auto record = findDatabase(context, *run, arguments.database);
    if (!record) {
        throw CommandEnd(ExitCode::Usage, absolutePath(context, arguments.database) +
                                              " is listed in no index and was left as it is.");
    }
    // Without opening it: one that was changed or is gone is to be deleted as well.
    core::DatabaseLists lists(run->vault());
    const auto result = store::deleteDatabase(run->vault(), store::OpenDatabaseContext{*record}, lists);
    const bool deleted = result != store::DeletionResult::Declined;
    if (context.options.json) {
        JsonWriter& json = context.json;
        json.beginObject();
        json.path("database", record->path);
        json.flag("deleted", deleted);
    } else if (!deleted) {
        context.out << "Nothing was deleted.\n";
    }
    if (result == store::DeletionResult::Incomplete) return ExitCode::Failed;
    const bool isCancelled = context.platform.process.cancelRequested() || context.ui.wasUnanswered();
    return !deleted && isCancelled ? ExitCode::Cancelled : ExitCode::Done;
}

}  // namespace corvalence::cli
