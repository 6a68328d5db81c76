#include "reports/saved_report.h"

#include "crypto/sealed_file.h"
#include "platform/file_copy.h"
#include "reports/report_writer.h"

namespace corvalence::reports {

std::vector<SavedReport> plannedSaves(const store::Vault& vault, const std::string& path) {
    std::vector<SavedReport> planned;
    for (const ReportKind kind : kSaveOrder) {
        if (vault.platform.files.status(reportPath(vault.configuration, kind), platform::Follow::Yes))
            planned.push_back({kind, path + reportRow(kind).letter});
    }
    return planned;
}

void saveReport(store::Vault& vault, const SavedReport& report) {
    const auto source = vault.platform.files.openShared(reportPath(vault.configuration, report.kind));
    crypto::TemporaryFile copy = vault.working.createSealed(report.path, crypto::kSealedBesideSuffix);
    platform::copyBytes(*source, copy.file(), source->size());
    copy.keepAs(report.path);
}

std::optional<std::string> findLetterFault(const std::string& path, std::optional<ReportKind> mode) {
    const ReportRow* const found = path.empty() ? nullptr : findReportRow(path.back());
    if (mode) {
        const ReportRow& row = reportRow(*mode);
        return found == &row ? std::nullopt : std::optional(path + std::string(row.refusal));
    }
    if (found != nullptr) return std::nullopt;
    return path + " does not appear to be a Corvalence Report";
}

}  // namespace corvalence::reports
