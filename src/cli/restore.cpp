#include "files/restore.h"

#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"

namespace corvalence::cli {

namespace {

void writeText(Context& context, const files::RestoreResult& result) {
    std::string text = result.message + "\n";
    for (const std::string& note : result.notes)
        text += note + "\n";
    if (!result.movedTo.empty()) text += "The changed file was moved to " + result.movedTo + "\n";
    context.out << shown(text, LineFeeds::Keep);
}

void writeJson(Context& context, const std::string& database, const std::string& file,
               const files::RestoreResult& result) {
    JsonWriter& json = context.json;
    json.beginObject();
    json.path("database", database);
    json.path("path", file);
    json.flag("restored", result.restored);
    json.text("message", result.message);
    json.beginArray("notes");
    for (const std::string& note : result.notes)
        json.text({}, note);
    json.end();
    result.movedTo.empty() ? json.null("moved_to") : json.path("moved_to", result.movedTo);
}

}  // namespace

ExitCode runRestore(Context& context, const RestoreArguments& arguments) {
    const auto run = startRun(context);
    const auto database = openFileDatabase(context, *run, arguments.database);
    const auto record = findRecord(context, *run, database, arguments.file);
    const auto result = files::FileRestore(run->vault(), database).restoreFile(record, arguments.changedFile);
    if (!result.restored) context.ui.message(platform::Icon::Stop, result.message);
    if (context.options.json) {
        writeJson(context, database.path(), record.path, result);
    } else if (result.restored) {
        writeText(context, result);
    }
    if (result.cancelled) return ExitCode::Cancelled;
    return result.restored ? ExitCode::Done : ExitCode::Failed;
}

}  // namespace corvalence::cli
