#include "cli/component_text.h"

#include "cli/console_text.h"
#include "cli/session.h"
#include "platform/time_text.h"
#include "reports/report_writer.h"

namespace corvalence::cli {

namespace {

reports::ReportFile openReport(core::Run& run, reports::ReportKind kind) {
    const std::string path = reports::reportPath(run.vault().configuration, kind);
    auto report = reports::ReportFile::open(run.vault(), path);
    if (!report) throw base::FileFailure(base::Cause::FileNotFound, 0, path);
    return *std::move(report);
}

void writeOutcome(Context& context, const components::CheckOutcome& outcome,
                  const store::OpenDatabaseContext& database, const std::vector<std::string>& lines) {
    for (const std::string& line : lines)
        context.out << shown(line, LineFeeds::Keep) + "\n";
    if (outcome.cancelled) {
        context.out << "The check was cancelled. It left no report.\n";
        return;
    }
    if (outcome.isEmpty) return;
    const std::string now = platform::formatFileTime(context.platform.clock, context.platform.clock.now());
    context.out << "\nDatabase: " + shown(database.path()) + "\nChecked: " + now + "\n";
    writeCounts(context, outcome.counts);
    writeRemarks(context, outcome.remarks);
}

void writeOutcomeJson(Context& context, const components::CheckOutcome& outcome,
                      const store::OpenDatabaseContext& database, const reports::RecordRenderer& renderer,
                      const std::vector<std::string_view>& lines) {
    JsonWriter& json = context.json;
    json.beginObject();
    json.path("database", database.path());
    json.text("kind", kindName(database.record.kind));
    writeCountsJson(json, outcome.counts);
    json.beginArray("changes");
    for (std::size_t number = 0; number < lines.size(); ++number)
        writeRecordJson(json, renderer, number, lines[number]);
    json.end();
    writeRemarksJson(json, outcome.remarks);
    json.flag("cancelled", outcome.cancelled);
    json.flag("empty", outcome.isEmpty);
}

}  // namespace

void writeCounts(Context& context, const std::vector<components::Count>& counts) {
    for (const components::Count& count : counts)
        context.out << std::to_string(count.count).append(count.text) + "\n";
}

void writeRemarks(Context& context, const std::vector<components::Remark>& remarks) {
    for (const components::Remark& remark : remarks) {
        context.out << std::to_string(remark.count).append(remark.text) + "\n";
        for (const files::UnreadableEntry& detail : remark.details) {
            const std::string reason = detail.reason.empty() ? "" : "  Reason: " + detail.reason;
            context.out << "  " + shown(detail.path) + reason + "\n";
        }
    }
}

void writeCountsJson(JsonWriter& json, const std::vector<components::Count>& counts) {
    json.beginObject("counts");
    for (const components::Count& count : counts)
        json.number(count.name, count.count);
    json.end();
}

void writeRemarksJson(JsonWriter& json, const std::vector<components::Remark>& remarks) {
    json.beginArray("remarks");
    for (const components::Remark& remark : remarks) {
        json.beginObject();
        json.text("name", remark.name);
        json.number("count", remark.count);
        json.flag("fault", remark.isFault);
        json.beginArray("details");
        for (const files::UnreadableEntry& detail : remark.details) {
            json.beginObject();
            json.path("path", detail.path);
            json.text("reason", detail.reason);
            json.end();
        }
        json.end();
        json.end();
    }
    json.end();
}

void writeRecordJson(JsonWriter& json, const reports::RecordRenderer& renderer, std::size_t number,
                     std::string_view line) {
    const auto fields = renderer.fields(number, line);
    if (fields.empty()) return;
    json.beginObject();
    for (const reports::ReportField& field : fields)
        field.isPath ? json.path(field.name, field.value) : json.text(field.name, field.value);
    json.end();
}

ExitCode checkComponent(Context& context, core::Run& run, const components::ComponentKind& kind,
                        const store::OpenDatabaseContext& database) {
    const auto outcome = components::checkDatabase(run.vault(), context.machine, kind, database);
    const auto renderer = kind.makeRenderer(context.platform.paths);
    std::optional<reports::ReportFile> report;
    if (!outcome.cancelled && !outcome.isEmpty) report.emplace(openReport(run, kind.report));
    const std::vector<std::string_view> lines = report ? report->lines() : std::vector<std::string_view>();
    context.ui.clearLine();
    if (context.options.json) {
        writeOutcomeJson(context, outcome, database, *renderer, lines);
    } else {
        std::vector<std::string> texts;
        for (std::size_t number = 0; number < lines.size(); ++number)
            texts.push_back(renderer->text(number, lines[number]));
        writeOutcome(context, outcome, database, texts);
    }
    if (outcome.cancelled) return ExitCode::Cancelled;
    return outcome.differs() || !outcome.isWhole() ? ExitCode::Differences : ExitCode::Done;
}

}  // namespace corvalence::cli
