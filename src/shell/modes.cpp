#include "shell/modes.h"

#include <array>

namespace corvalence::shell {

namespace {

using reports::ReportKind;
using store::DatabaseKind;

constexpr std::array<ModeRow, 6> kModes = {{
    {Mode::FileContents, "Corvalence - File Contents Mode.", "Open Database",
     "Watch the contents of the files that you choose.", DatabaseKind::Numbered, ReportKind::FileContents},
    {Mode::DirectoryStructure, "Corvalence - Directory Structure Mode.",
     "Select a Directory Structure Database To Be Checked", "Watch which files and folders there are.",
     DatabaseKind::DirectoryStructure, ReportKind::DirectoryStructure},
    {Mode::Permissions, "Corvalence - Permissions Mode.", "Select a Permissions Database To Be Checked",
     "Watch who may do what with files.", DatabaseKind::Permissions, ReportKind::Permissions},
    {Mode::Registry, "Corvalence - Registry Mode.", "Select a Registry Structure Database To Be Checked",
     "Watch the settings of the system.", DatabaseKind::Registry, ReportKind::Registry},
    {Mode::CompleteSystem, "Corvalence - Complete Sysytem Mode.",
     "Select a Complete System Database To Be Checked", "Watch everything at once.", DatabaseKind::Numbered,
     std::nullopt},
    {Mode::Services, "Corvalence - Services Mode.", "Select a Services Database To Be Checked",
     "Watch the installed services.", DatabaseKind::Services, ReportKind::Services},
}};

}  // namespace

std::span<const ModeRow> modeRows() noexcept {
    return kModes;
}

const ModeRow& modeRow(Mode mode) noexcept {
    return kModes[static_cast<std::size_t>(mode)];
}

Mode modeOf(store::DatabaseKind kind, bool isCompleteSystem) noexcept {
    if (isCompleteSystem) return Mode::CompleteSystem;
    for (const ModeRow& row : kModes) {
        if (row.kind == kind) return row.mode;
    }
    return Mode::FileContents;
}

Mode modeOf(reports::ReportKind kind) noexcept {
    for (const ModeRow& row : kModes) {
        if (row.report == kind) return row.mode;
    }
    return Mode::CompleteSystem;
}

}  // namespace corvalence::shell
