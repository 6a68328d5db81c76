#include "files/add_pipeline.h"

#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "files/left_out_text.h"

namespace corvalence::cli {

namespace {

/// What the two halves of the command, paths and location, came to together.
struct Outcome {
    std::uint64_t added = 0;
    std::uint64_t listed = 0;
    std::uint64_t failed = 0;
    std::uint64_t ownFiles = 0;
    files::PassedOver passedOver;
    bool isRefused = false;
    bool isCancelled = false;
    bool isKept = true;

    void take(files::AddReport report) {
        added += report.added;
        listed += report.listed;
        failed += report.failed;
        ownFiles += report.ownFiles;
        passedOver = std::move(report.passedOver);
        isRefused = report.refused;
        isCancelled = report.cancelled;
        isKept = report.kept;
    }
};

void writeText(Context& context, const Outcome& outcome, const std::string& reports) {
    std::string text = reports;
    if (outcome.isCancelled && !outcome.isKept) text += "The files added before the cancel were not kept.\n";
    context.out << text + files::leftOutText(outcome.failed, outcome.ownFiles, outcome.passedOver);
}

void writeJson(Context& context, const std::string& database, const Outcome& outcome) {
    JsonWriter& json = context.json;
    json.beginObject();
    json.path("database", database);
    json.number("added", outcome.added);
    json.number("listed", outcome.listed);
    json.number("failed", outcome.failed);
    json.beginObject("passed_over");
    json.number("hidden", outcome.passedOver.hiddenNames);
    json.number("links", outcome.passedOver.links);
    json.number("own_files", outcome.ownFiles);
    json.number("pseudo_file_systems", outcome.passedOver.pseudoFileSystems);
    json.beginArray("unreadable");
    for (const files::UnreadableEntry& entry : outcome.passedOver.unreadable) {
        json.beginObject();
        json.path("path", entry.path);
        json.text("reason", entry.reason);
        json.end();
    }
    json.end();
    json.end();
    json.flag("cancelled", outcome.isCancelled);
    json.flag("kept", outcome.isKept);
}

/// The folder that --location means, or "*". Wrong usage where nothing can be added from it, so that nobody
/// types a password for nothing.
std::string locationOf(Context& context, const std::string& argument) {
    if (argument == files::kAnyLocation) return argument;
    std::string location = absolutePath(context, argument);
    const std::string refusal = files::locationRefusal(context.platform, location);
    if (!refusal.empty()) throw CommandEnd(ExitCode::Usage, refusal);
    return location;
}

files::AddOptions addOptions(Context& context, const AddArguments& arguments) {
    files::AddOptions options;
    options.notifyListed = arguments.notifyListed || !arguments.location;
    options.notifyFailed = !arguments.ignoreFailed;
    options.backups = arguments.backups;
    options.proceed = [&context](const files::AddSearch& found) {
        context.ui.message(platform::Icon::Information, files::foundText(found.files, found.bytes));
        return true;
    };
    return options;
}

std::string reportLine(const files::AddReport& report) {
    return report.text.empty() ? "No file was added.\n" : shown(report.text, LineFeeds::Keep) + "\n";
}

}  // namespace

ExitCode runAdd(Context& context, const AddArguments& arguments) {
    if (arguments.paths.empty() && !arguments.location) {
        throw CommandEnd(ExitCode::Usage, "`add` takes the files' paths, or --location with a folder.");
    }
    if (arguments.criteria.any() && !arguments.location)
        throw CommandEnd(ExitCode::Usage, "Criteria go with --location.");
    const files::Criteria criteria = parseCriteria(arguments.criteria);
    const std::string location = arguments.location ? locationOf(context, *arguments.location) : "";
    const auto run = startRun(context);
    auto database = openFileDatabase(context, *run, arguments.database);
    files::AddPipeline pipeline(run->vault(), database);
    const files::AddOptions options = addOptions(context, arguments);

    Outcome outcome;
    std::string reports;
    if (!arguments.paths.empty()) {
        std::vector<std::string> paths;
        for (const std::string& path : arguments.paths)
            paths.push_back(absolutePath(context, path));
        files::AddReport report = pipeline.addFiles(paths, options);
        reports += reportLine(report);
        outcome.take(std::move(report));
    }
    if (arguments.location && !outcome.isCancelled) {
        files::AddReport report = pipeline.addLocation(location, criteria, options);
        reports += reportLine(report);
        outcome.take(std::move(report));
    }
    context.options.json ? writeJson(context, database.path(), outcome)
                         : writeText(context, outcome, reports);
    if (outcome.isCancelled) return ExitCode::Cancelled;
    if (outcome.isRefused) return ExitCode::Failed;
    const bool isComplete = outcome.failed == 0 && outcome.passedOver.unreadable.empty();
    return isComplete ? ExitCode::Done : ExitCode::Differences;
}

}  // namespace corvalence::cli
