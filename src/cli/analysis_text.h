#pragma once

#include <string>

#include "files/file_analysis.h"

namespace corvalence::cli {

/// A line for each side that has the row: "now" or "backup" (with "only" behind it where the other has none),
/// offset, the hex view's bytes, and the bytes as text, separated by tabs.
std::string differingRowText(files::AnalysisView view, const files::DifferingRow& row);

/// "3 of 40 rows differ."
std::string analysisSummary(std::uint64_t differing, std::uint64_t rows);

/// Why there is nothing to compare a file with; empty where there is.
std::string whyNotCompared(const files::FileAnalysis& analysis, const std::string& path);

/// That the file could not be opened and has no rows; empty where it could.
std::string whyNotRead(const files::FileAnalysis& analysis, const std::string& path);

}  // namespace corvalence::cli
