#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvalence::platform {

/// How a service is started and under which account; texts as they stand, line breaks included.
struct ServiceConfiguration {
    std::string binaryPath;
    /// 0 boot, 1 system, 2 automatic, 3 on demand, 4 disabled.
    std::uint32_t startType = 0;
    /// 0 ignore, 1 normal, 2 severe, 3 critical.
    std::uint32_t errorControl = 0;
    std::string account;

    bool operator==(const ServiceConfiguration&) const = default;
};

/// A service or driver. Numbers are those of the Windows service manager on both systems.
struct Service {
    std::string name;
    std::string displayName;
    /// Bits: 1 kernel driver, 2 file system driver, 4 adapter, 8 recogniser driver, 0x10 own process, 0x20
    /// shared process, 0x100 interactive.
    std::uint32_t type = 0;
    /// 1 stopped, 2 starting, 3 stopping, 4 running, 5 going on, 6 pausing, 7 paused.
    std::uint32_t state = 0;
    /// Bits: 1 stop, 2 pause and go on, 4 shutdown, 8 change of parameters, 0x10 change of network bindings.
    std::uint32_t controls = 0;
    /// Empty where the caller may not read it.
    std::optional<ServiceConfiguration> configuration;
    /// As it stands, line breaks included; empty where there is none.
    std::string description;

    bool operator==(const Service&) const = default;
};

class ServiceManager {
  public:
    virtual ~ServiceManager() = default;

    /// All services and drivers, running or not, ordered by the bytes of their names. Throws
    /// base::FileFailure (the manager's name for a path) where the manager cannot be reached or refuses.
    virtual std::vector<Service> services() = 0;
};

}  // namespace corvalence::platform
