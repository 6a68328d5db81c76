#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "components/component_check.h"
#include "components/drive_walk.h"
#include "components/path_list.h"
#include "platform/stream_source.h"

namespace corvalence::components {

/// Reads the names of streams, for lines of a stream list: path, separator, name.
class StreamScan {
  public:
    /// What no line can hold goes to `account`.
    StreamScan(platform::StreamSource& source, WalkAccount& account) : source_(source), account_(account) {}

    using Visit = std::function<void(const std::string& line)>;
    /// The streams of one file or folder. What cannot be opened has none and is counted.
    void scan(const std::string& path, const Visit& visit);
    /// Those of the folders of one walked root. The scan of the root itself takes the place of the first
    /// folder's; a complete one does both. False where `goesOn` said so in between.
    bool scanFolders(const std::string& root, const PathList& folders, bool complete, const Visit& visit,
                     const std::function<bool()>& goesOn);

    /// Files and folders whose streams could not be read.
    std::uint64_t unread() const noexcept { return unread_; }
    /// Those where the system can list none.
    std::uint64_t unsupported() const noexcept { return unsupported_; }
    /// First folders of a root that the root's scan took the place of.
    std::uint64_t replaced() const noexcept { return replaced_; }

  private:
    platform::StreamSource& source_;
    WalkAccount& account_;
    std::uint64_t unread_ = 0;
    std::uint64_t unsupported_ = 0;
    std::uint64_t replaced_ = 0;
};

/// Says what was not scanned.
void addRemarks(std::vector<Remark>& remarks, const StreamScan& scan);

}  // namespace corvalence::components
