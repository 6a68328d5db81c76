#include "cli/commands.h"
#include "cli/component_text.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "reports/report_writer.h"
#include "reports/saved_report.h"
#include "schedule/log_files.h"

namespace corvalence::cli {

namespace {

/// One report that is shown: a page of it, and the lines that are no records of its kind.
class ShownReport {
  public:
    ShownReport(Context& context, core::Run& run, const reports::ReportRow& row, const std::string& path,
                std::size_t page)
        : context_(context), row_(row), report_(reports::ReportFile::open(run.vault(), path)) {
        renderer_ = components::makeRenderer(row.kind, context.platform);
        if (!report_) return;
        pages_.emplace(*report_, *renderer_, reports::reportPageSize(run.configuration()));
        page_ = pages_->limited(page);
        foreign_ = report_->malformed();
        for (const std::string_view line : report_->lines())
            foreign_ += renderer_->columns(line) ? 0U : 1U;
    }

    bool isThere() const { return report_.has_value(); }
    bool isWhole() const { return foreign_ == 0; }

    void writeText() const {
        std::string text = std::string(row_.title) + "\n";
        if (!report_) {
            context_.out << text.append(row_.notChecked) + "\n";
            return;
        }
        if (report_->lines().empty()) {
            text.append(row_.noChanges) += "\n";
        } else {
            text += pages_->caption(page_) + "\n";
            for (std::size_t at = 0; at < row_.columns.size(); ++at)
                text.append(at == 0 ? "" : "\t").append(row_.columns[at]);
            text += "\n";
        }
        context_.out << text;
        const auto range = pages_->range(page_);
        for (std::size_t line = range.begin; line < range.end; ++line)
            writeRows(report_->lines()[line]);
        if (foreign_ > 0) context_.out << std::to_string(foreign_) + " lines are no records of this kind.\n";
    }

    void writeJson() const {
        JsonWriter& json = context_.json;
        json.beginObject();
        json.text("kind", row_.consoleName);
        json.flag("checked", isThere());
        json.number("page", page_);
        json.number("pages", report_ ? pages_->count() : 0);
        json.number("total", report_ ? report_->lines().size() : 0);
        json.number("foreign", foreign_);
        json.beginArray("changes");
        const auto range = report_ ? pages_->range(page_) : reports::ReportPages::Range{0, 0};
        for (std::size_t line = range.begin; line < range.end; ++line)
            writeRecordJson(json, *renderer_, line, report_->lines()[line]);
        json.end();
        json.end();
    }

  private:
    void writeRows(std::string_view line) const {
        for (const std::vector<std::string>& columns : renderer_->rows(line)) {
            std::string row;
            for (std::size_t at = 0; at < columns.size(); ++at)
                row += (at == 0 ? "" : "\t") + shown(columns[at]);
            context_.out << row + "\n";
        }
    }

    Context& context_;
    const reports::ReportRow& row_;
    std::optional<reports::ReportFile> report_;
    std::unique_ptr<reports::RecordRenderer> renderer_;
    std::optional<reports::ReportPages> pages_;
    std::size_t page_ = 1;
    std::size_t foreign_ = 0;
};

ExitCode show(Context& context, const std::vector<ShownReport>& reports) {
    JsonWriter& json = context.json;
    if (context.options.json) {
        json.beginObject();
        json.beginArray("reports");
    }
    ExitCode code = ExitCode::Done;
    for (const ShownReport& report : reports) {
        context.options.json ? report.writeJson() : report.writeText();
        if (!report.isThere() && code == ExitCode::Done) code = ExitCode::Differences;
        if (!report.isWhole()) code = ExitCode::Failed;
    }
    return code;
}

/// Whether a report may be written to `path`: it is no place of the installation's own, and nothing is there,
/// or a report is, or the user says so.
bool mayReplace(Context& context, core::Run& run, const std::string& path) {
    if (const auto fault = schedule::LogFiles(run.vault()).findExportFault(path)) {
        context.ui.message(platform::Icon::Stop, *fault);
        return false;
    }
    if (!context.platform.files.status(path, platform::Follow::No)) return true;
    try {
        const auto old = reports::ReportFile::open(run.vault(), path);
        if (old && old->malformed() == 0) return true;
    } catch (const base::FileFailure&) {
        // Not a file that can be read as a report: the user decides.
    }
    return context.ui.ask(platform::Icon::Warning, path + " is no report. Would you like to replace it?",
                          false);
}

}  // namespace

ExitCode runReportShow(Context& context, const ReportArguments& arguments) {
    const reports::ReportRow* const wanted =
        arguments.kind ? reports::findReportRow(std::string_view(*arguments.kind)) : nullptr;
    if (arguments.kind && wanted == nullptr)
        throw CommandEnd(ExitCode::Usage, *arguments.kind + " is no kind of report.");
    const auto run = startRun(context);
    std::vector<ShownReport> reports;
    for (const reports::ReportRow& row : reports::reportRows()) {
        const std::string path = reports::reportPath(run->configuration(), row.kind);
        const bool isThere = context.platform.files.status(path, platform::Follow::Yes).has_value();
        if (wanted == nullptr ? isThere : wanted == &row)
            reports.emplace_back(context, *run, row, path, arguments.page);
    }
    if (reports.empty()) throw CommandEnd(ExitCode::Differences, "No check has left a report.");
    return show(context, reports);
}

ExitCode runReportOpen(Context& context, const ReportArguments& arguments) {
    const std::string path = absolutePath(context, arguments.path);
    if (const auto fault = reports::findLetterFault(path, std::nullopt))
        throw CommandEnd(ExitCode::Usage, *fault);
    const auto run = startRun(context);
    std::vector<ShownReport> reports;
    reports.emplace_back(context, *run, *reports::findReportRow(path.back()), path, arguments.page);
    if (!reports.front().isThere()) throw base::FileFailure(base::Cause::FileNotFound, 0, path);
    return show(context, reports);
}

ExitCode runReportSave(Context& context, const ReportArguments& arguments) {
    const std::string path = absolutePath(context, arguments.path);
    const auto run = startRun(context);
    const auto planned = reports::plannedSaves(run->vault(), path);
    if (planned.empty()) throw CommandEnd(ExitCode::Failed, "No check has left a report.");
    JsonWriter& json = context.json;
    if (context.options.json) {
        json.beginObject();
        json.beginArray("saved");
    }
    ExitCode code = ExitCode::Done;
    for (const reports::SavedReport& report : planned) {
        if (!mayReplace(context, *run, report.path)) {
            code = ExitCode::Failed;
            continue;
        }
        reports::saveReport(run->vault(), report);
        if (context.options.json) {
            json.beginObject();
            json.path("path", report.path);
            json.end();
        } else {
            context.out << shown(report.path) + " saved.\n";
        }
    }
    return code;
}

}  // namespace corvalence::cli
