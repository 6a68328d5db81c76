#include "files/check.h"

#include "cli/changed_file_prompt.h"
#include "cli/check_report.h"
#include "cli/commands.h"
#include "cli/session.h"

namespace corvalence::cli {

ExitCode runCheck(Context& context, const CheckArguments& arguments) {
    const auto run = startRun(context);
    auto database = openFileDatabase(context, *run, arguments.database);

    const bool asks = !arguments.reaction && context.terminal.isInteractive();
    ChangedFilePrompt prompt(context, run->vault(), database);
    FixedReaction fixed(arguments.reaction.value_or(files::Reaction::Ignore), arguments.changedFile);
    files::ChangedFileDetailsDialog& dialog =
        asks ? static_cast<files::ChangedFileDetailsDialog&>(prompt) : fixed;
    const auto report = context.options.json
                            ? makeCheckJson(context)
                            : makeCheckText(context, asks && context.terminal.outputIsTerminal());

    files::FileContentsCheck work(run->vault(), database, dialog, *report);
    report->begin(database);
    const files::CheckSummary summary = work.checkAllFiles();
    report->finish(summary);
    const files::CheckCounts& counts = summary.counts;
    if (!summary.backupFailure.empty()) return ExitCode::Failed;
    if (counts.cancelled) return ExitCode::Cancelled;
    return counts.changed > 0 || counts.unchecked > 0 ? ExitCode::Differences : ExitCode::Done;
}

}  // namespace corvalence::cli
