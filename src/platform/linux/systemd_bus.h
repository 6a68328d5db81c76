#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

struct sd_bus;

namespace corvalence::platform::linux_system {

struct CloseBus {
    void operator()(sd_bus* bus) const noexcept;
};
using Bus = std::unique_ptr<sd_bus, CloseBus>;

/// A connection to the bus of the system; null where there is none.
Bus openSystemBus();

/// What the running manager says of its units beyond their files.
struct ManagedUnits {
    std::map<std::string, std::string> activeStates;  // of the loaded units: "active", "inactive", "failed"
    std::map<std::string, std::string> fileStates;    // of the unit files: "enabled", "static", "masked"
};

/// Asks systemd on a bus by its D-Bus interface (org.freedesktop.systemd1(5)) and waits no longer than five
/// seconds for either answer. Empty where no manager answers: it is never started for being asked.
std::optional<ManagedUnits> askManager(sd_bus& bus);

}  // namespace corvalence::platform::linux_system
