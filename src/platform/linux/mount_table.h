#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvalence::platform::linux_system {

struct Mount {
    std::uint64_t id = 0;
    std::string device;  // "major:minor"
    std::string point;   // the folder that it is mounted on
    std::string type;    // of the file system: "ext4", "fuse.sshfs"
    std::string source;  // what is mounted: "/dev/sda1", "host:/export"
};

/// The mounts that a text in the form of /proc/self/mountinfo lists, in its order; lines of another form are
/// left out.
std::vector<Mount> parseMounts(std::string_view text);

/// The mounts of this process at this moment.
std::vector<Mount> readMounts();

}  // namespace corvalence::platform::linux_system
