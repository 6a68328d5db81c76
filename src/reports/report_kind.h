#pragma once

#include <array>
#include <span>
#include <string_view>

namespace corvalence::reports {

/// What a report is about, in the order of the pages of a Complete System report.
enum class ReportKind { FileContents, DirectoryStructure, Permissions, Registry, Services };

struct ReportRow {
    ReportKind kind;
    std::string_view fileName;     // "DirChk"
    char letter;                   // ends the name of a saved report
    std::string_view consoleName;  // "directory-structure"
    std::string_view title;
    std::string_view refusal;     // behind the path of a saved report of another kind
    std::string_view noChanges;   // the report holds no record
    std::string_view notChecked;  // there is no report
    std::span<const std::string_view> columns;
};

/// One row a kind, in the order of the enumeration.
std::span<const ReportRow> reportRows() noexcept;
const ReportRow& reportRow(ReportKind kind) noexcept;

/// The kind that a saved report's letter stands for; null where it stands for none.
const ReportRow* findReportRow(char letter) noexcept;
/// By console name; null where there is none.
const ReportRow* findReportRow(std::string_view consoleName) noexcept;

/// The order in which reports are saved.
inline constexpr std::array<ReportKind, 5> kSaveOrder = {ReportKind::Registry, ReportKind::DirectoryStructure,
                                                         ReportKind::FileContents, ReportKind::Permissions,
                                                         ReportKind::Services};

/// The order in which a cancelled check removes them.
inline constexpr std::array<ReportKind, 5> kRemovalOrder = {ReportKind::DirectoryStructure,
                                                            ReportKind::FileContents, ReportKind::Permissions,
                                                            ReportKind::Registry, ReportKind::Services};

}  // namespace corvalence::reports
