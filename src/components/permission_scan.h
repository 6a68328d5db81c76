#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "components/component_check.h"
#include "components/machine.h"
#include "components/permission_record.h"
#include "platform/platform.h"

namespace corvalence::components {

/// Paths that a remark names, the first ones, and the number of all.
struct NotedPaths {
    std::uint64_t count = 0;
    std::vector<files::UnreadableEntry> examples;

    void add(std::string_view path, std::string_view reason);
};

/// Reads the access lists of files as creation and check take them.
class PermissionScan {
  public:
    PermissionScan(const platform::Platform& system, const Machine& machine)
        : paths_(system.paths), files_(system.files), lists_(machine.accessLists) {}

    /// Makes `record` the record of a file, or of a folder with a closing separator: its path and its
    /// entries. A list that cannot be read is noted and told like none. False where nothing stands at the
    /// path.
    bool render(std::string_view path, std::string& record);

    /// Whether the path ends like the name of the file that the system swaps its memory to: such a file has
    /// no record, and a record of one is not compared, unless walks are complete.
    static bool isPassedOver(std::string_view path) noexcept;

    /// What could not be read.
    void addRemarks(std::vector<Remark>& remarks) const;

  private:
    bool isThere(const std::string& file) const;

    const base::PathRules& paths_;
    platform::FileSystem& files_;
    platform::AccessLists& lists_;
    std::string file_;  // the path without a closing separator
    NotedPaths unreadable_;
};

}  // namespace corvalence::components
