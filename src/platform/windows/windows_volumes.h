#pragma once

#include "platform/volumes.h"

namespace corvalence::platform::windows_system {

/// Volumes by drive letters, folders that a volume is mounted on, and shares. A walk reaches a folder with a
/// volume on it as a link, which it does not follow, so that nothing stands in its way.
class WindowsVolumes : public Volumes {
  public:
    /// Empty for what is no path of this system.
    std::string rootOf(const std::string& path) override;
    DriveType driveType(const std::string& root) override;
    bool keepsAccessLists(const std::string& root) override;
    bool isFat(const std::string& root) override;
    WalkRoots walkRoots() override;
};

}  // namespace corvalence::platform::windows_system
