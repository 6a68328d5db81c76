#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/context.h"
#include "components/kinds.h"
#include "core/start.h"
#include "reports/report_file.h"

namespace corvalence::cli {

// What creations and checks of baselines have to tell, and the lines of reports, the same for every kind.

/// "3 Files Added.", one a line; those of 0 as well.
void writeCounts(Context& context, const std::vector<components::Count>& counts);
void writeRemarks(Context& context, const std::vector<components::Remark>& remarks);

/// Members of the open object: "counts": {...}, "remarks": [...].
void writeCountsJson(JsonWriter& json, const std::vector<components::Count>& counts);
void writeRemarksJson(JsonWriter& json, const std::vector<components::Remark>& remarks);
/// An object with the fields of a report's line, by its number; nothing for a line of another kind.
void writeRecordJson(JsonWriter& json, const reports::RecordRenderer& renderer, std::size_t number,
                     std::string_view line);

/// What a check found, from its report.
void writeOutcome(Context& context, core::Run& run, reports::ReportKind kind,
                  const components::CheckOutcome& outcome);
/// Which database was checked, and that it was now.
void writeCheckedAt(Context& context, const store::OpenDatabaseContext& database);
/// Members of the open object: counts, "changes": [...], remarks, "cancelled", "empty".
void writeOutcomeJson(Context& context, core::Run& run, reports::ReportKind kind,
                      const components::CheckOutcome& outcome);

/// The check of a baseline and what it found.
ExitCode checkComponent(Context& context, core::Run& run, const components::ComponentKind& kind,
                        const store::OpenDatabaseContext& database);

}  // namespace corvalence::cli
