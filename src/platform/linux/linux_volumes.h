#pragma once

#include "platform/volumes.h"

namespace corvalence::platform::linux_system {

/// Volumes are mounts, as the kernel lists them for this process.
class LinuxVolumes : public Volumes {
  public:
    std::string rootOf(const std::string& path) override;
    DriveType driveType(const std::string& root) override;
    bool keepsAccessLists(const std::string& root) override;
    bool isFat(const std::string& root) override;
    WalkRoots walkRoots() override;
};

}  // namespace corvalence::platform::linux_system
