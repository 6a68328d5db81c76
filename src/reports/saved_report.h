#pragma once

#include <optional>
#include <string>
#include <vector>

#include "reports/report_kind.h"
#include "store/vault.h"

namespace corvalence::reports {

/// Where each report that is there would be saved for a user's choice of a path: that path and the letter of
/// the kind. In the order in which they are saved.
struct SavedReport {
    ReportKind kind;
    std::string path;
};
std::vector<SavedReport> plannedSaves(const store::Vault& vault, const std::string& path);

/// Copies the report of the last check, sealed as it is, over whatever stands at its place; that file is
/// whole at every moment. Throws base::FileFailure.
void saveReport(store::Vault& vault, const SavedReport& report);

/// Why a saved report cannot be shown by its last letter, as the message for the user: `mode` is the kind
/// that is being shown; without one (Complete System) any of the five letters passes.
std::optional<std::string> findLetterFault(const std::string& path, std::optional<ReportKind> mode);

}  // namespace corvalence::reports
