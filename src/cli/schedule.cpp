#include "schedule/schedule_dialog.h"

#include <algorithm>

#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "core/installation.h"

namespace corvalence::cli {

namespace {

using schedule::ScheduleDialog;
using schedule::ScheduleSettings;

constexpr std::string_view kNoInterval =
    "No interval is set, so that nothing is checked by the clock. Set one "
    "with:  corvalencectl schedule interval HH:MM:SS";

void writePaths(JsonWriter& json, std::string_view name, const std::vector<std::string>& paths) {
    json.beginArray(name);
    for (const std::string& path : paths) {
        json.beginObject();
        json.path("path", path);
        json.end();
    }
    json.end();
}

void writeLines(JsonWriter& json, std::string_view name, const std::vector<std::string>& lines) {
    json.beginArray(name);
    for (const std::string& line : lines)
        json.text({}, line);
    json.end();
}

void writeSettings(Context& context, const ScheduleSettings& settings) {
    const std::string_view reaction = kReactionNames[static_cast<std::size_t>(settings.reaction)];
    const AutoRestoreName restore = autoRestoreName(settings);
    const std::string_view restoreName = kAutoRestoreNames[static_cast<std::size_t>(restore)];
    if (context.options.json) {
        context.json.text("interval", settings.interval.text());
        context.json.number("seconds", settings.interval.total().count());
        context.json.text("reaction", reaction);
        context.json.text("auto_restore", restoreName);
        return;
    }
    context.out << "Check every " + settings.interval.text() + ", " + std::string(reaction) +
                       ", Auto Restore: " + std::string(restoreName) + "\n";
}

void tellDamage(Context& context, const ScheduleDialog& dialog) {
    const auto tell = [&](const std::string& text) { context.ui.message(platform::Icon::Warning, text); };
    if (dialog.isMissing()) tell("The schedule is missing. Adding a database begins a new one.");
    if (dialog.isTorn()) tell("The schedule is damaged: its end cannot be read.");
    for (const std::string& line : dialog.damaged())
        tell("This line of the schedule is damaged and names no database: " + shown(line));
    if (dialog.isTorn() || !dialog.damaged().empty())
        tell("What is damaged is taken out with:  corvalencectl schedule remove --damaged");
}

/// The rows that an argument means: a full path, or a file name that only one of them has. Databases that are
/// gone are listed as well.
std::size_t findRow(Context& context, const ScheduleDialog& dialog, const std::string& argument) {
    const base::PathRules& paths = context.platform.paths;
    const std::string path = absolutePath(context, argument);
    std::vector<std::size_t> named;
    for (std::size_t row = 0; row < dialog.rows().size(); ++row) {
        const schedule::ScheduleRow& each = dialog.rows()[row];
        if (paths.equal(each.location, path)) return row;
        if (paths.equal(each.name, argument)) named.push_back(row);
    }
    if (named.size() == 1) return named.front();
    throw CommandEnd(ExitCode::Usage, named.empty() ? argument + " is not in the schedule."
                                                    : "Several scheduled databases are named " + argument +
                                                          "; give one's path.");
}

/// Changes settings, under the lock but without a password: they are no secret.
template <typename Change>
ExitCode changeSettings(Context& context, bool changes, Change&& change) {
    requireInstallation(context);
    settings::Configuration configuration(context.platform.settings, context.ui);
    std::unique_ptr<platform::InstanceLock> lock;
    if (changes) lock = lockInstallation(context, configuration.folder(settings::key::kInstallDirectory));
    ScheduleSettings settings = ScheduleSettings::read(configuration);
    if (changes) {
        change(settings);
        if (!settings.write(configuration)) return ExitCode::Failed;
    }
    if (context.options.json) context.json.beginObject();
    writeSettings(context, settings);
    if (settings.interval.total().count() == 0)
        context.ui.message(platform::Icon::Information, std::string(kNoInterval));
    return ExitCode::Done;
}

}  // namespace

AutoRestoreName autoRestoreName(const ScheduleSettings& settings) {
    if (!settings.autoRestore) return AutoRestoreName::Off;
    return settings.movesChanged ? AutoRestoreName::Move : AutoRestoreName::Delete;
}

ExitCode runScheduleList(Context& context) {
    const auto run = startRun(context);
    const ScheduleDialog dialog(run->vault());
    JsonWriter& json = context.json;
    if (context.options.json) json.beginObject();
    writeSettings(context, dialog.settings);
    if (context.options.json) {
        json.beginArray("databases");
        for (const schedule::ScheduleRow& row : dialog.rows()) {
            json.beginObject();
            json.path("path", row.location);
            row.checkedAt ? json.time("last_check", *row.checkedAt) : json.null("last_check");
            json.end();
        }
        json.end();
        writeLines(json, "damaged", dialog.damaged());
        json.flag("torn", dialog.isTorn());
        json.flag("missing", dialog.isMissing());
    } else {
        for (const schedule::ScheduleRow& row : dialog.rows())
            context.out << shown(row.location) + "\t" + row.lastCheck + "\n";
    }
    tellDamage(context, dialog);
    const bool isWhole = !dialog.isMissing() && !dialog.isTorn() && dialog.damaged().empty();
    return isWhole ? ExitCode::Done : ExitCode::Differences;
}

ExitCode runScheduleAdd(Context& context, const ScheduleArguments& arguments) {
    const auto run = startRun(context);
    std::vector<std::string> paths;
    for (const std::string& argument : arguments.databases) {
        const auto record = findDatabase(context, *run, argument);
        paths.push_back(record ? record->path : absolutePath(context, argument));
    }
    ScheduleDialog dialog(run->vault());
    ExitCode code = ExitCode::Done;
    std::vector<std::string> added;
    for (const std::string& path : paths) {
        const auto result = dialog.add(path);
        if (result == schedule::AddToSchedule::Added) {
            added.push_back(path);
        } else {
            code = result == schedule::AddToSchedule::NotValid ? ExitCode::Usage : ExitCode::Differences;
        }
    }
    if (context.options.json) {
        context.json.beginObject();
        writePaths(context.json, "added", added);
    }
    for (const std::string& path : context.options.json ? std::vector<std::string>() : added)
        context.out << shown(path) + " added to the schedule.\n";
    if (!dialog.settings.startsTimer())
        context.ui.message(platform::Icon::Information, std::string(kNoInterval));
    return code;
}

ExitCode runScheduleRemove(Context& context, const ScheduleArguments& arguments) {
    if (arguments.databases.empty() && !arguments.damaged)
        throw CommandEnd(ExitCode::Usage, "Select a database from the list first.");
    const auto run = startRun(context);
    ScheduleDialog dialog(run->vault());
    std::vector<std::string> dropped;
    if (arguments.damaged) dropped = dialog.dropDamaged();
    std::vector<std::size_t> rows;
    for (const std::string& argument : arguments.databases)
        rows.push_back(findRow(context, dialog, argument));
    const auto removed = rows.empty() ? std::vector<std::string>() : dialog.remove(rows);
    if (context.options.json) {
        context.json.beginObject();
        writePaths(context.json, "removed", removed);
        writeLines(context.json, "damaged", dropped);
        return ExitCode::Done;
    }
    for (const std::string& path : removed)
        context.out << shown(path) + " removed from the schedule.\n";
    for (const std::string& line : dropped)
        context.out << "Damaged line removed from the schedule: " + shown(line) + "\n";
    return ExitCode::Done;
}

ExitCode runScheduleInterval(Context& context, const ScheduleArguments& arguments) {
    const auto interval =
        arguments.interval ? schedule::CheckInterval::parse(*arguments.interval) : std::nullopt;
    if (arguments.interval && !interval)
        throw CommandEnd(ExitCode::Usage, *arguments.interval + " is no interval from 00:00:00 to 24:59:59.");
    return changeSettings(context, interval.has_value(),
                          [&](ScheduleSettings& settings) { settings.interval = *interval; });
}

ExitCode runScheduleReaction(Context& context, const ScheduleArguments& arguments) {
    const bool changes = arguments.reaction || arguments.autoRestore;
    return changeSettings(context, changes, [&](ScheduleSettings& settings) {
        if (arguments.reaction) settings.reaction = *arguments.reaction;
        if (!arguments.autoRestore) return;
        if (*arguments.autoRestore != AutoRestoreName::Off && !settings.canAutoRestore())
            throw CommandEnd(ExitCode::Usage, "Auto Restore goes with continuous checking only.");
        settings.autoRestore = *arguments.autoRestore != AutoRestoreName::Off;
        if (settings.autoRestore) settings.movesChanged = *arguments.autoRestore == AutoRestoreName::Move;
    });
}

}  // namespace corvalence::cli
