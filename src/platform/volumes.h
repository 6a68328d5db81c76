#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace corvalence::platform {

enum class DriveType { Unknown, Removable, Fixed, Remote, Optical };

/// Where a walk over the whole machine begins, and where it turns back.
struct WalkRoots {
    /// Roots of volumes, as rootOf() gives them: the drives that can be listed by letter on Windows; on Linux
    /// the mounts that hold files, by the bytes of their paths. Pseudo file systems, which show the system's
    /// state as files, are none.
    std::vector<std::string> roots;
    /// Folders that a walk meets below a root but does not enter, since another volume is mounted there: one
    /// of the other roots, a pseudo file system or one that cannot be listed. By the bytes of their paths.
    std::vector<std::string> barriers;
};

class Volumes {
  public:
    virtual ~Volumes() = default;

    /// The root of the volume that holds `path`: "C:\" on Windows, the mount point on Linux. Works for a path
    /// that does not exist, by its nearest folder that does.
    virtual std::string rootOf(const std::string& path) = 0;
    virtual DriveType driveType(const std::string& root) = 0;
    /// Whether the volume at a root keeps an access list with each file. False for what is no root.
    virtual bool keepsAccessLists(const std::string& root) = 0;
    /// Whether the volume at a root has a FAT file system with 32-bit file sizes, which also lists a folder
    /// in no stable order. False for what is no root.
    virtual bool isFat(const std::string& root) = 0;
    /// As the machine is at this moment. A drive without a medium is left out without a word or a question.
    virtual WalkRoots walkRoots() = 0;
};

}  // namespace corvalence::platform
