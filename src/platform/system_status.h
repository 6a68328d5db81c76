#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace corvalence::platform {

/// What is left of something, and how much of it there is, in bytes.
struct Capacity {
    std::uint64_t available = 0;
    std::uint64_t total = 0;
};

/// How much room the machine has left. Any thread may ask.
class SystemStatus {
  public:
    virtual ~SystemStatus() = default;

    /// Physical memory: what programs can still get without paging, and what the system has in all. Empty
    /// where the system does not tell.
    virtual std::optional<Capacity> memory() = 0;
    /// The volume that holds `path`, a file or folder that exists: what this user may still write, and the
    /// volume's size for this user. Empty where the path leads nowhere or the volume does not tell.
    virtual std::optional<Capacity> disk(const std::string& path) = 0;
};

}  // namespace corvalence::platform
