#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "files/remove_pipeline.h"

namespace corvalence::cli {

namespace {

/// The location as records begin with it: a folder with its closing separator. A folder need not exist any
/// more for its files to be removed.
std::string locationText(Context& context, const std::optional<std::string>& location) {
    if (!location || *location == files::kAnyLocation) return std::string(files::kAnyLocation);
    return context.platform.paths.withSeparator(absolutePath(context, *location));
}

}  // namespace

ExitCode runRemove(Context& context, const RemoveArguments& arguments) {
    const bool matches = arguments.location || arguments.criteria.any();
    const int selections = (arguments.paths.empty() ? 0 : 1) + (arguments.all ? 1 : 0) + (matches ? 1 : 0);
    if (selections != 1) {
        throw CommandEnd(ExitCode::Usage,
                         "`remove` takes either the files' paths, or --all, or --location and criteria.");
    }
    const files::Criteria criteria = parseCriteria(arguments.criteria);
    const std::string location = locationText(context, arguments.location);
    const bool isAll = arguments.all || (location == files::kAnyLocation && !arguments.criteria.any());
    const auto run = startRun(context);
    auto database = openFileDatabase(context, *run, arguments.database);
    files::RemovePipeline pipeline(run->vault(), database, [&](std::uint64_t count) {
        return context.ui.ask(platform::Icon::Warning, files::removeQuestion(count, database.path()), false);
    });

    files::RemoveReport report;
    if (!arguments.paths.empty()) {
        std::vector<std::string> paths;
        for (const std::string& path : arguments.paths)
            paths.push_back(absolutePath(context, path));
        report = pipeline.removeFiles(paths);
    } else if (isAll) {
        report = pipeline.removeAll();
    } else {
        report = pipeline.removeMatching(location, criteria);
    }
    if (context.options.json) {
        JsonWriter& json = context.json;
        json.beginObject();
        json.path("database", database.path());
        json.number("removed", report.removed);
        json.flag("cancelled", report.cancelled || context.ui.wasUnanswered());
    } else {
        context.out << (report.text.empty() ? "No files were removed." : shown(report.text)) + "\n";
    }
    return report.cancelled || context.ui.wasUnanswered() ? ExitCode::Cancelled : ExitCode::Done;
}

}  // namespace corvalence::cli
