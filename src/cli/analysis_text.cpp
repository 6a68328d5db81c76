#include "cli/analysis_text.h"

namespace corvalence::cli {

namespace {

std::string sideText(files::AnalysisView view, std::uint64_t number, std::string name, base::ByteView bytes,
                     base::ByteView other) {
    if (bytes.empty()) return {};
    const files::AnalysisRow row = files::analysisRow(view, number, bytes);
    if (other.empty()) name += " only";
    std::string text = name + "\t" + row.offset + "\t";
    if (view == files::AnalysisView::Hex) text += row.hex + "\t";
    return text + row.ascii + "\n";
}

}  // namespace

std::string differingRowText(files::AnalysisView view, const files::DifferingRow& row) {
    return sideText(view, row.number, "now", row.now, row.backup) +
           sideText(view, row.number, "backup", row.backup, row.now);
}

std::string analysisSummary(std::uint64_t differing, std::uint64_t rows) {
    return std::to_string(differing) + " of " + std::to_string(rows) + " rows differ.";
}

std::string whyNotCompared(const files::FileAnalysis& analysis, const std::string& path) {
    switch (analysis.backup()) {
        case files::FileAnalysis::Backup::Found:
            return {};
        case files::FileAnalysis::Backup::NotBackedUp:
            return path + ": " + std::string(files::kNotBackedUpRows.front()) + "\n" +
                   std::string(files::kNotBackedUpRows.back());
        case files::FileAnalysis::Backup::Unusable:
            return analysis.trouble();
    }
    return {};
}

std::string whyNotRead(const files::FileAnalysis& analysis, const std::string& path) {
    if (analysis.nowFailure().empty()) return {};
    return "Couldn't open " + path + "\nReason: " + analysis.nowFailure();
}

}  // namespace corvalence::cli
