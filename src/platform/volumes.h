#pragma once

#include <cstdint>
#include <string>

namespace corvalence::platform {

enum class DriveType { Unknown, Removable, Fixed, Remote, Optical };

class Volumes {
  public:
    virtual ~Volumes() = default;

    /// The root of the volume that holds `path`: "C:\" on Windows, the mount point on Linux. Works for a path
    /// that does not exist, by its nearest folder that does.
    virtual std::string rootOf(const std::string& path) = 0;
    virtual DriveType driveType(const std::string& root) = 0;
};

}  // namespace corvalence::platform
