#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/access_control.h"
#include "platform/windows/handle.h"

namespace corvalence::platform::windows_system {

/// Goes along a path folder by folder and holds each open, so that none of them can be renamed, removed or
/// exchanged for a link behind its back.
class PathWalk {
  public:
    explicit PathWalk(std::string file) : file_(std::move(file)) {}

    /// The folder in which the file stands, and the file's own name there. Throws as
    /// AccessControl::pinFolderOf.
    std::unique_ptr<PinnedFolder> finish(std::string& name);

  private:
    /// Holds what stands at `path`; where that is a link, gives the path that it leads to.
    std::string hold(const std::string& path, bool isLast);
    void refuseStranger(const Handle& link) const;

    std::string file_;
    std::vector<Handle> held_;
};

}  // namespace corvalence::platform::windows_system
