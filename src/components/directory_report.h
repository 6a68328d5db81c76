#pragma once

#include <array>
#include <string_view>

#include "base/path_rules.h"
#include "reports/record_renderer.h"

namespace corvalence::components {

enum class DirectoryChange {
    FileAdded,
    FileRemoved,
    FileRecycled,
    FileCreatedAndRecycled,
    FolderAdded,
    FolderRemoved,
    FolderRecycled,
    FolderCreatedAndRecycled,
    StreamAdded,
    StreamRemoved,
};

struct DirectoryCode {
    std::string_view code;    // in the report
    std::string_view name;    // of its counter, for documents
    std::string_view prefix;  // before the path, on a console and in a log
    std::string_view total;   // behind its counter
    std::string_view status;  // in a report's list
};

/// One row a change, in the order of the enumeration.
inline constexpr std::array<DirectoryCode, 10> kDirectoryCodes = {{
    {"A", "files_added", "File added:   ", " Files Added.", "File added."},
    {"R", "files_removed", "File removed:   ", " Files Removed.", "File removed."},
    {"B", "files_recycled", "File moved to Recycle Bin:   ", " Files moved to Recycle Bin.",
     "File moved to Recycle Bin."},
    {"FN", "files_created_then_recycled",
     "File created then moved to Recycle Bin between database checks:   ",
     " Files created then moved to Recycle Bin between database checks.",
     "File created then moved to Recycle Bin between database checks."},
    {"DA", "directories_added", "Directory added:   ", " Directories Added.", "Directory added."},
    {"DR", "directories_removed", "Directory removed:   ", " Directories Removed.", "Directory removed."},
    {"DB", "directories_recycled", "Directory moved to Recycle Bin:   ", " Directories moved to Recycle Bin.",
     "Directory moved to Recycle Bin."},
    {"DN", "directories_created_then_recycled",
     "Directory created then moved to Recycle Bin between database checks:   ",
     " Directories created then moved to Recycle Bin between database checks.",
     "Directory created then moved to Recycle Bin between database checks."},
    {"AA", "streams_added", "Alternate Data Stream added:   ", " Alternate Data Streams added.",
     "Alternate Data Stream Added."},
    {"AR", "streams_removed", "Alternate Data Stream removed:   ", " Alternate Data Streams removed.",
     "Alternate Data Stream Removed."},
}};

constexpr const DirectoryCode& directoryCode(DirectoryChange change) noexcept {
    return kDirectoryCodes[static_cast<std::size_t>(change)];
}

/// The records of a directory structure report: path and code.
class DirectoryRenderer : public reports::RecordRenderer {
  public:
    explicit DirectoryRenderer(const base::PathRules& paths) : paths_(paths) {}

    std::optional<std::vector<std::string>> columns(std::string_view line) const override;
    std::vector<reports::ReportField> fields(std::size_t number, std::string_view line) const override;
    std::string text(std::size_t number, std::string_view line) const override;

  private:
    const base::PathRules& paths_;
};

}  // namespace corvalence::components
