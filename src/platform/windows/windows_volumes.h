#pragma once

#include "platform/volumes.h"

namespace corvalence::platform::windows_system {

/// Volumes by drive letters, folders that a volume is mounted on, and shares.
class WindowsVolumes : public Volumes {
  public:
    std::string rootOf(const std::string& path) override;
    DriveType driveType(const std::string& root) override;
};

}  // namespace corvalence::platform::windows_system
