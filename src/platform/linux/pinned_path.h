#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access_control.h"
#include "platform/linux/descriptor.h"

namespace corvalence::platform::linux_system {

/// Goes along a path from the root, component by component, holding every folder open and resolving every
/// link by itself, so that no change of names behind its back leads elsewhere.
class PathWalk {
  public:
    explicit PathWalk(const std::string& file);

    /// The folder in which the file stands, and the file's own name there. Throws as
    /// AccessControl::pinFolderOf.
    std::unique_ptr<PinnedFolder> finish(std::string& name);

  private:
    struct Step {
        std::string name;
        Descriptor folder;
    };

    int current() const noexcept;
    void enqueue(std::string_view path);
    /// The component opened without following it; not open where nothing stands there.
    Descriptor open(const std::string& component, mode_t& mode, uid_t& owner) const;
    void follow(const Descriptor& link, uid_t owner);

    std::string file_;
    Descriptor root_;
    std::vector<Step> steps_;
    std::deque<std::string> rest_;
    int links_ = 0;
};

}  // namespace corvalence::platform::linux_system
