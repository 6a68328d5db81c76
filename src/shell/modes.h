#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "reports/report_kind.h"
#include "store/index_record.h"

namespace corvalence::shell {

/// What the program is about at the moment: one kind of database.
enum class Mode {
    FileContents = 0,
    DirectoryStructure = 1,
    Permissions = 2,
    Registry = 3,
    CompleteSystem = 4,
    Services = 5
};

struct ModeRow {
    Mode mode;
    std::string_view title;      // of the window
    std::string_view openTitle;  // of the dialog in which a database is chosen
    std::string_view purpose;    // what its databases are for
    store::DatabaseKind kind;
    /// The kind of report that a check ends in; a Complete System has one of each.
    std::optional<reports::ReportKind> report;
};

/// By their numbers.
std::span<const ModeRow> modeRows() noexcept;
const ModeRow& modeRow(Mode mode) noexcept;

/// The mode in which a listed database is opened.
Mode modeOf(store::DatabaseKind kind, bool isCompleteSystem) noexcept;
/// The mode in which a report of this kind alone is shown.
Mode modeOf(reports::ReportKind kind) noexcept;

inline constexpr std::string_view kPlainTitle = "Corvalence";
/// Of the status panes while no database is open.
inline constexpr std::string_view kLockedText = "Databases locked";

}  // namespace corvalence::shell
