#include "base/hex_text.h"
#include "cli/analysis_text.h"
#include "cli/commands.h"
#include "cli/json_writer.h"
#include "cli/session.h"

namespace corvalence::cli {

namespace {

using files::FileAnalysis;

void beginJson(JsonWriter& json, const std::string& database, const std::string& file,
               files::AnalysisView view, const FileAnalysis& analysis) {
    json.beginObject();
    json.path("database", database);
    json.path("path", file);
    json.number("row_width", files::rowWidth(view));
    if (analysis.nowFailure().empty()) {
        json.number("size_now", analysis.size(FileAnalysis::Side::Now));
        json.null("reason");
    } else {
        json.null("size_now");
        json.text("reason", analysis.nowFailure());
    }
    json.number("size_backup", analysis.size(FileAnalysis::Side::Backup));
    json.beginArray("rows");
}

void writeJsonRow(JsonWriter& json, files::AnalysisView view, const files::DifferingRow& row) {
    json.beginObject();
    json.number("offset", row.number * files::rowWidth(view));
    for (const auto& [name, bytes] : {std::pair("now", row.now), {"backup", row.backup}}) {
        bytes.empty() ? json.null(name) : json.text(name, base::hexText(bytes));
    }
    json.end();
}

void endJson(JsonWriter& json, std::uint64_t differing, std::uint64_t rows, bool cancelled) {
    json.end();
    json.number("differing", differing);
    json.number("total", rows);
    json.flag("cancelled", cancelled);
}

/// Writes every differing row; their number.
std::uint64_t writeRows(Context& context, files::AnalysisView view, FileAnalysis& analysis, bool& cancelled) {
    std::uint64_t differing = 0;
    const auto progress = context.ui.openProgress(std::string(files::analysisStatus(view)));
    files::ByteProgress bytes(*progress, analysis.size());
    const auto visit = [&](const files::DifferingRow& row) {
        ++differing;
        if (context.options.json) {
            writeJsonRow(context.json, view, row);
        } else {
            context.ui.clearLine();
            context.out << differingRowText(view, row);
        }
        return static_cast<bool>(context.out);
    };
    cancelled = analysis.forEachDifference(view, 0, bytes, visit) == FileAnalysis::Walk::Cancelled;
    return differing;
}

}  // namespace

ExitCode runAnalyse(Context& context, const AnalyseArguments& arguments) {
    const auto run = startRun(context);
    const auto database = openFileDatabase(context, *run, arguments.database);
    const auto record = findRecord(context, *run, database, arguments.file);
    const auto view = arguments.hex ? files::AnalysisView::Hex : files::AnalysisView::Text;
    FileAnalysis analysis(run->vault(), database, record);
    if (const std::string why = whyNotCompared(analysis, record.path); !why.empty())
        throw CommandEnd(ExitCode::Failed, why);
    const std::string unread = whyNotRead(analysis, record.path);
    if (!unread.empty()) context.ui.message(platform::Icon::Warning, unread);
    if (context.options.json) beginJson(context.json, database.path(), record.path, view, analysis);
    bool cancelled = false;
    const std::uint64_t differing = writeRows(context, view, analysis, cancelled);
    const std::uint64_t rows = analysis.rowCount(view);
    if (context.options.json) {
        endJson(context.json, differing, rows, cancelled);
    } else if (!cancelled) {
        context.out << analysisSummary(differing, rows) << "\n";
    }
    if (cancelled) return ExitCode::Cancelled;
    return differing > 0 || !unread.empty() ? ExitCode::Differences : ExitCode::Done;
}

}  // namespace corvalence::cli
