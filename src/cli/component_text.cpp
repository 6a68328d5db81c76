#include "cli/component_text.h"

#include "cli/console_text.h"
#include "cli/session.h"
#include "platform/time_text.h"
#include "reports/report_writer.h"

namespace corvalence::cli {

namespace {

/// The report of the last check; none where that was cancelled, or had nothing to compare.
std::optional<reports::ReportFile> openReport(core::Run& run, reports::ReportKind kind,
                                              const components::CheckOutcome& outcome) {
    if (outcome.cancelled || outcome.isEmpty) return std::nullopt;
    const std::string path = reports::reportPath(run.vault().configuration, kind);
    auto report = reports::ReportFile::open(run.vault(), path);
    if (!report) throw base::FileFailure(base::Cause::FileNotFound, 0, path);
    return report;
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

void writeOutcome(Context& context, core::Run& run, reports::ReportKind kind,
                  const components::CheckOutcome& outcome) {
    const auto renderer = components::makeRenderer(kind, context.platform);
    if (const auto report = openReport(run, kind, outcome)) {
        const auto& lines = report->lines();
        for (std::size_t at = 0; at < lines.size(); ++at)
            context.out << shown(renderer->text(at, lines[at]), LineFeeds::Keep) + "\n";
    }
}

void writeCheckedAt(Context& context, const store::OpenDatabaseContext& database) {
    const std::string now = platform::formatFileTime(context.platform.clock, context.platform.clock.now());
    context.out << "\nDatabase: " + shown(database.path()) + "\nChecked: " + now + "\n";
}

void writeOutcomeJson(Context& context, core::Run& run, reports::ReportKind kind,
                      const components::CheckOutcome& outcome) {
    JsonWriter& json = context.json;
    writeCountsJson(json, outcome.counts);
    const auto renderer = components::makeRenderer(kind, context.platform);
    json.beginArray("changes");
    if (const auto report = openReport(run, kind, outcome)) {
        for (std::size_t at = 0; at < report->lines().size(); ++at)
            writeRecordJson(json, *renderer, at, report->lines()[at]);
    }
    json.end();
    writeRemarksJson(json, outcome.remarks);
    json.flag("cancelled", outcome.cancelled);
    json.flag("empty", outcome.isEmpty);
}

ExitCode checkComponent(Context& context, core::Run& run, const components::ComponentKind& kind,
                        const store::OpenDatabaseContext& database) {
    const auto outcome = components::checkDatabase(run.vault(), context.machine, kind, database);
    context.ui.clearLine();
    if (context.options.json) {
        context.json.beginObject();
        context.json.path("database", database.path());
        context.json.text("kind", kindName(database.record.kind));
        writeOutcomeJson(context, run, kind.report, outcome);
    } else if (outcome.cancelled) {
        context.out << "The check was cancelled. It left no report.\n";
    } else if (!outcome.isEmpty) {
        writeOutcome(context, run, kind.report, outcome);
        writeCheckedAt(context, database);
        writeCounts(context, outcome.counts);
        writeRemarks(context, outcome.remarks);
    }
    if (outcome.cancelled) return ExitCode::Cancelled;
    return outcome.differs() || !outcome.isWhole() ? ExitCode::Differences : ExitCode::Done;
}

}  // namespace corvalence::cli
