#include "files/check.h"

#include "cli/changed_file_prompt.h"
#include "cli/check_report.h"
#include "cli/commands.h"
#include "cli/complete_system.h"
#include "cli/component_text.h"
#include "cli/session.h"

namespace corvalence::cli {

namespace {

ExitCode checkFiles(Context& context, core::Run& run, store::OpenDatabaseContext& database,
                    const CheckArguments& arguments) {
    const bool asks = !arguments.reaction && context.terminal.isInteractive();
    ChangedFilePrompt prompt(context, run.vault(), database);
    files::FixedReaction fixed(arguments.reaction.value_or(files::Reaction::Ignore), arguments.changedFile);
    files::ChangedFileDetailsDialog& dialog =
        asks ? static_cast<files::ChangedFileDetailsDialog&>(prompt) : fixed;
    const auto report = context.options.json
                            ? makeCheckJson(context)
                            : makeCheckText(context, asks && context.terminal.outputIsTerminal());

    files::FileContentsCheck work(run.vault(), database, dialog, *report);
    report->begin(database);
    const files::CheckSummary summary = work.checkAllFiles();
    report->finish(summary);
    const files::CheckCounts& counts = summary.counts;
    if (!summary.backupFailure.empty()) return ExitCode::Failed;
    if (counts.cancelled) return ExitCode::Cancelled;
    return counts.changed > 0 || counts.unchecked > 0 ? ExitCode::Differences : ExitCode::Done;
}

}  // namespace

ExitCode runCheck(Context& context, const CheckArguments& arguments) {
    const auto run = startRun(context);
    auto database = openDatabase(context, *run, arguments.database);
    const bool isSystem = store::isCompleteSystem(run->vault(), database.record);
    if (!isSystem && !arguments.components.empty())
        throw CommandEnd(ExitCode::Usage, database.path() + " has no components.");
    if (const auto* kind = components::findComponentKind(database.record.kind))
        return checkComponent(context, *run, *kind, database);
    if (isSystem) {
        if (arguments.reaction.value_or(files::Reaction::Ignore) != files::Reaction::Ignore)
            throw CommandEnd(ExitCode::Usage, "The check of a Complete System changes nothing.");
        return checkSystem(context, *run, database, arguments);
    }
    return checkFiles(context, *run, database, arguments);
}

}  // namespace corvalence::cli
