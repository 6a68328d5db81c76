#include "platform/linux/systemd_services.h"

#include <array>
#include <string_view>

namespace corvalence::platform::linux_system {

namespace {

// Numbers of the service manager whose terms the interface speaks in.
constexpr std::uint32_t kOwnProcess = 0x10;
constexpr std::uint32_t kAutomatic = 2;
constexpr std::uint32_t kOnDemand = 3;
constexpr std::uint32_t kDisabled = 4;
constexpr std::uint32_t kNormal = 1;
constexpr std::uint32_t kCritical = 3;
constexpr std::uint32_t kRunning = 4;
constexpr std::uint32_t kAcceptsStop = 1;
constexpr std::uint32_t kAcceptsNewParameters = 8;

struct StateRow {
    std::string_view active;
    std::uint32_t state;
};
constexpr std::array<StateRow, 6> kStates = {{{"active", kRunning},
                                              {"activating", 2},
                                              {"deactivating", 3},
                                              {"reloading", kRunning},
                                              {"inactive", 1},
                                              {"failed", 1}}};

/// What a unit runs or waits for: section, key, and whether the key is told with the value.
struct CommandRow {
    std::string_view section;
    std::string_view key;
    bool isNamed = true;
};
constexpr std::array<CommandRow, 27> kCommands = {{
    {"Service", "ExecStart", false},
    {"Service", "ExecCondition"},
    {"Service", "ExecStartPre"},
    {"Service", "ExecStartPost"},
    {"Service", "ExecReload"},
    {"Service", "ExecStop"},
    {"Service", "ExecStopPost"},
    {"Service", "Environment"},
    {"Service", "EnvironmentFile"},
    {"Socket", "ListenStream"},
    {"Socket", "ListenDatagram"},
    {"Socket", "ListenSequentialPacket"},
    {"Socket", "ListenFIFO"},
    {"Socket", "Service"},
    {"Timer", "OnCalendar"},
    {"Timer", "OnBootSec"},
    {"Timer", "OnUnitActiveSec"},
    {"Timer", "Unit"},
    {"Path", "PathExists"},
    {"Path", "PathChanged"},
    {"Path", "PathModified"},
    {"Path", "DirectoryNotEmpty"},
    {"Path", "Unit"},
    {"Mount", "What"},
    {"Mount", "Where"},
    {"Automount", "Where"},
    {"Swap", "What"},
}};

std::string joined(const std::vector<std::string>& parts, std::string_view between) {
    std::string text;
    for (const std::string& part : parts) {
        if (!text.empty()) text += between;
        text += part;
    }
    return text;
}

std::string commandOf(const UnitFile& unit) {
    std::vector<std::string> parts;
    for (const CommandRow& row : kCommands) {
        for (const std::string& value : unit.values(row.section, row.key))
            parts.push_back(row.isNamed ? std::string(row.key) + "=" + value : value);
    }
    return joined(parts, "; ");
}

bool isYes(const std::string& value) {
    return value == "yes" || value == "true" || value == "on" || value == "1";
}

/// `fileState`: what the manager says; it knows templates, and not their instances.
std::uint32_t startType(const UnitFile& unit, const std::string* fileState) {
    const bool isMasked = fileState != nullptr ? fileState->starts_with("masked") : unit.isMasked;
    const bool isEnabled = fileState != nullptr ? fileState->starts_with("enabled") : unit.isEnabled;
    if (isMasked) return kDisabled;
    return isEnabled ? kAutomatic : kOnDemand;
}

ServiceConfiguration configurationOf(const UnitFile& unit, const std::string* fileState) {
    ServiceConfiguration configuration;
    configuration.binaryPath = commandOf(unit);
    configuration.startType = startType(unit, fileState);
    const std::string action = unit.value("Unit", "FailureAction");
    configuration.errorControl = action.empty() || action == "none" ? kNormal : kCritical;
    if (unit.type() == "service") {
        const std::string user = unit.value("Service", "User");
        configuration.account = user.empty() ? "root" : user;
    }
    return configuration;
}

const std::string* find(const std::map<std::string, std::string>& states, const std::string& name) {
    const auto row = states.find(name);
    return row == states.end() ? nullptr : &row->second;
}

/// A unit that the manager has not loaded is not running.
std::uint32_t stateOf(const std::string* active) {
    for (const StateRow& row : kStates)
        if (active != nullptr && row.active == *active) return row.state;
    return 1;
}

Service serviceOf(const UnitFile& unit, const std::optional<ManagedUnits>& manager) {
    Service service;
    service.name = unit.name;
    service.displayName = unit.value("Unit", "Description");
    service.type = unit.type() == "service" ? kOwnProcess : 0;
    if (manager) service.state = stateOf(find(manager->activeStates, unit.name));
    if (service.state == kRunning) {
        if (!isYes(unit.value("Unit", "RefuseManualStop"))) service.controls |= kAcceptsStop;
        if (!unit.value("Service", "ExecReload").empty()) service.controls |= kAcceptsNewParameters;
    }
    service.configuration = configurationOf(unit, manager ? find(manager->fileStates, unit.name) : nullptr);
    service.description = joined(unit.values("Unit", "Documentation"), " ");
    return service;
}

}  // namespace

std::vector<Service> SystemdServices::services() {
    std::optional<ManagedUnits> manager;
    if (const Bus bus = openBus_()) manager = askManager(*bus);
    std::vector<Service> services;
    for (const UnitFile& unit : readUnitFiles(files_, folders_))
        services.push_back(serviceOf(unit, manager));
    return services;
}

}  // namespace corvalence::platform::linux_system
