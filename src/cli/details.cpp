#include "cli/commands.h"
#include "cli/component_text.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "components/complete_system.h"
#include "files/database_details.h"

namespace corvalence::cli {

namespace {

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
void writeJson(Context& context, const store::IndexRecord& record, const files::DatabaseDetails& details,
               const Components& system) {
    JsonWriter& json = context.json;
    writeTimesJson(json, record, system.empty() ? kindName(record.kind) : kCompleteSystem, details.modified);
    json.number("listed", details.listed);
    json.number("total_size", details.bytes);
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

/// The first `count` lines of the details.
void writeLines(Context& context, const files::DatabaseDetails& details, std::size_t count) {
    for (const files::DetailsLine& line : files::detailsLines(details, context.platform.clock)) {
        if (count-- == 0) break;
        const std::string_view label = line.label.substr(0, line.label.find(':') + 1);
        context.out << std::string(label) + " " + line.value + "\n";
    }
}

void writeText(Context& context, const files::DatabaseDetails& details, const Components& system) {
    writeLines(context, details, SIZE_MAX);
    context.out << "Database: " + shown(details.path) + "\n";
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
    constexpr std::size_t kTimes = 3;
    writeLines(context, {record.path, record.created, record.lastCheck, modified, 0, 0, {}}, kTimes);
    writeCounts(context, listed);
    context.out << "Database: " + shown(record.path) + "\n";
}

}  // namespace

ExitCode runDetails(Context& context, const DatabaseArguments& arguments) {
    const auto run = startRun(context);
    const auto database = openDatabase(context, *run, arguments.database);
    const store::IndexRecord& record = database.record;
    if (const auto* kind = components::findComponentKind(record.kind)) {
        const auto status = context.platform.files.status(database.path(), platform::Follow::Yes);
        const auto files = store::componentRecords(run->vault(), kind->kind, store::Form::Standalone, record);
        writeBaseline(context, record, status ? status->written : base::FileTime{},
                      kind->countListed(run->vault(), files));
        return ExitCode::Done;
    }
    const files::DatabaseDetails details = files::readDetails(run->vault(), database);
    Components system;
    if (store::isCompleteSystem(run->vault(), record))
        system = components::countComponents(run->vault(), record);
    context.options.json ? writeJson(context, record, details, system) : writeText(context, details, system);
    return ExitCode::Done;
}

}  // namespace corvalence::cli
