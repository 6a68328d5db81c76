#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/record_json.h"
#include "cli/session.h"
#include "files/database_copy.h"
#include "files/file_texts.h"
#include "platform/time_text.h"

namespace corvalence::cli {

namespace {

std::string textLine(platform::Clock& clock, const files::FileRecord& record) {
    return shown(record.path) + "\t" + record.digest + "\t" + std::to_string(record.size) + "\t" +
           std::string(files::attributeText(record.attributes)) + "\t" +
           platform::formatFileTime(clock, record.written) + "\t" +
           platform::formatFileTime(clock, record.created) + "\n";
}

void writeJson(JsonWriter& json, const files::FileRecord& record) {
    json.beginObject();
    json.path("path", record.path);
    writeRecordMembers(json, record, record.size);
    json.end();
}

}  // namespace

ExitCode runFiles(Context& context, const DatabaseArguments& arguments) {
    const auto run = startRun(context);
    const auto database = openFileDatabase(context, *run, arguments.database);
    files::DatabaseCopy copy(run->vault(), database);
    JsonWriter& json = context.json;
    if (context.options.json) {
        json.beginObject();
        json.path("database", database.path());
        json.text("digest", crypto::digestKind(database.digest()).consoleName);
        json.beginArray("files");
    }
    files::RecordReader records = copy.records();
    for (std::string_view line; records.next(line);) {
        if (context.platform.process.cancelRequested()) throw CommandEnd(ExitCode::Cancelled);
        const auto record = files::FileRecord::parse(line, crypto::digestKind(database.digest()).width);
        if (!record) continue;  // a check tells it as unchecked
        if (context.options.json) {
            writeJson(json, *record);
        } else {
            context.out << textLine(context.platform.clock, *record);
        }
    }
    copy.discard();
    return ExitCode::Done;
}

}  // namespace corvalence::cli
