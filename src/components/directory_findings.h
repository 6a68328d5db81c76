#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "components/component_check.h"
#include "components/directory_report.h"
#include "components/path_list.h"
#include "reports/report_writer.h"

namespace corvalence::components {

/// Whether a path lies in one of the folders in which Windows keeps what was thrown away, by their names at
/// one place of the path, spelled exactly so. What comes there is not reported as added. A short path never
/// does.
bool isInRecycleFolder(std::string_view path) noexcept;

/// What a directory structure check found, in the order in which it found it.
class DirectoryFindings {
  public:
    void add(DirectoryChange change, std::string_view path);
    /// From here on each is told as it is added.
    void tellTo(reports::ReportSink& report) noexcept { report_ = &report; }

    std::size_t size() const noexcept { return changes_.size(); }
    std::string_view path(std::size_t at) const noexcept { return paths_[at]; }
    DirectoryChange change(std::size_t at) const noexcept { return changes_[at]; }

    /// Drops what was found both removed and added: on a file system that lists its entries in no stable
    /// order, one that only changed its place. False where the user cancelled.
    bool dropPairs(platform::Progress& progress);

    std::vector<Count> counts() const;
    /// Tells those that were not told as they were added, as long as `goesOn`; whether it came to their end.
    bool write(reports::ReportSink& report, const std::function<bool()>& goesOn) const;

  private:
    void tell(reports::ReportSink& report, std::size_t at) const;

    reports::ReportSink* report_ = nullptr;
    PathList paths_;
    std::vector<DirectoryChange> changes_;
    std::vector<bool> dropped_;
    std::array<std::uint64_t, kDirectoryCodes.size()> counts_{};
};

}  // namespace corvalence::components
