#include "base/record_text.h"
#include "cli/commands.h"
#include "cli/component_text.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "components/complete_system.h"
#include "files/database_copy.h"
#include "files/file_record.h"
#include "files/file_texts.h"
#include "platform/time_text.h"

namespace corvalence::cli {

namespace {

struct Totals {
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
};

Totals countFiles(core::Run& run, const store::OpenDatabaseContext& database) {
    files::DatabaseCopy copy(run.vault(), database);
    files::RecordReader records = copy.records();
    Totals totals;
    for (std::string_view line; records.next(line); ++totals.files) {
        if (const auto record = files::FileRecord::parse(line, crypto::digestKind(database.digest()).width))
            totals.bytes += record->size;
    }
    copy.discard();
    return totals;
}

void writeTimesJson(JsonWriter& json, const store::IndexRecord& record, std::string_view kind,
                    base::FileTime modified) {
    json.beginObject();
    json.path("database", record.path);
    json.text("kind", kind);
    json.time("created", record.created);
    record.lastCheck ? json.time("last_check", *record.lastCheck) : json.null("last_check");
    json.time("modified", modified);
}

using Components = std::vector<components::ComponentCreated>;

/// `system`: the other components of a Complete System; none for File Contents.
void writeJson(Context& context, const store::IndexRecord& record, base::FileTime modified,
               const Totals& totals, const Components& system) {
    JsonWriter& json = context.json;
    writeTimesJson(json, record, system.empty() ? kindName(record.kind) : kCompleteSystem, modified);
    json.number("listed", totals.files);
    json.number("total_size", totals.bytes);
    json.text("digest", crypto::digestKind(record.digest).consoleName);
    if (system.empty()) return;
    json.beginArray("components");
    for (const components::ComponentCreated& component : system) {
        json.beginObject();
        json.text("kind", reports::reportRow(component.component).consoleName);
        writeCountsJson(json, component.counts);
        json.end();
    }
    json.end();
}

std::string timesText(Context& context, const store::IndexRecord& record, base::FileTime modified) {
    const auto timeOf = [&](base::FileTime time) {
        return platform::formatFileTime(context.platform.clock, time);
    };
    return "Created: " + timeOf(record.created) +
           "\nLast checked: " + (record.lastCheck ? timeOf(*record.lastCheck) : "Unchecked") +
           "\nModified: " + timeOf(modified) + "\n";
}

void writeText(Context& context, const store::IndexRecord& record, base::FileTime modified,
               const Totals& totals, const Components& system) {
    context.out << timesText(context, record, modified) +
                       "Number of files listed: " + std::to_string(totals.files) +
                       "\nTotal size of files listed: " + files::formatSizeText(totals.bytes) +
                       "\nDigest value: " + std::string(crypto::digestKind(record.digest).name) +
                       "\nDatabase: " + shown(record.path) + "\n";
    for (const components::ComponentCreated& component : system) {
        context.out << std::string(reports::reportRow(component.component).consoleName) + ":\n";
        writeCounts(context, component.counts);
    }
}

/// A baseline has counts of what it lists in the place of sizes and digests.
void writeBaseline(Context& context, const store::IndexRecord& record, base::FileTime modified,
                   const std::vector<components::Count>& listed) {
    if (context.options.json) {
        writeTimesJson(context.json, record, kindName(record.kind), modified);
        for (const components::Count& count : listed)
            context.json.number(count.name, count.count);
        return;
    }
    context.out << timesText(context, record, modified);
    writeCounts(context, listed);
    context.out << "Database: " + shown(record.path) + "\n";
}

}  // namespace

ExitCode runDetails(Context& context, const DatabaseArguments& arguments) {
    const auto run = startRun(context);
    const auto database = openDatabase(context, *run, arguments.database);
    const store::IndexRecord& record = database.record;
    const auto status = context.platform.files.status(database.path(), platform::Follow::Yes);
    const base::FileTime modified = status ? status->written : base::FileTime{};
    if (const auto* kind = components::findComponentKind(record.kind)) {
        const auto files = store::componentRecords(run->vault(), kind->kind, store::Form::Standalone, record);
        writeBaseline(context, record, modified, kind->countListed(run->vault(), files));
        return ExitCode::Done;
    }
    const Totals totals = countFiles(*run, database);
    Components system;
    if (store::isCompleteSystem(run->vault(), record))
        system = components::countComponents(run->vault(), record);
    context.options.json ? writeJson(context, record, modified, totals, system)
                         : writeText(context, record, modified, totals, system);
    return ExitCode::Done;
}

}  // namespace corvalence::cli
