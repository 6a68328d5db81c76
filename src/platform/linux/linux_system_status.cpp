#include "platform/linux/linux_system_status.h"

#include <sys/statvfs.h>

#include <algorithm>
#include <fstream>

namespace corvalence::platform::linux_system {

std::optional<Capacity> LinuxSystemStatus::memory() {
    constexpr std::uint64_t kKibibyte = 1024;
    std::optional<std::uint64_t> available;
    std::optional<std::uint64_t> total;
    std::ifstream file("/proc/meminfo");
    std::string key;
    std::string rest;
    std::uint64_t amount = 0;
    while (!(available && total) && file >> key >> amount && std::getline(file, rest)) {
        if (key == "MemTotal:") total = amount * kKibibyte;
        if (key == "MemAvailable:") available = amount * kKibibyte;
    }
    if (!available || !total) return std::nullopt;
    return Capacity{*available, *total};
}

std::optional<Capacity> LinuxSystemStatus::disk(const std::string& path) {
    struct statvfs data {};
    if (path.find('\0') != std::string::npos || ::statvfs(path.c_str(), &data) != 0) return std::nullopt;
    // Blocks that are kept for the administrator count as used, as in df's percentage.
    const std::uint64_t kept = data.f_bfree - std::min(data.f_bavail, data.f_bfree);
    return Capacity{data.f_bavail * data.f_frsize, (data.f_blocks - kept) * data.f_frsize};
}

}  // namespace corvalence::platform::linux_system
