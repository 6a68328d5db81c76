#include "platform/linux/systemd_bus.h"

#include <systemd/sd-bus.h>

namespace corvalence::platform::linux_system {

namespace {

constexpr std::uint64_t kPatience = 5'000'000;  // microseconds

struct UnrefMessage {
    void operator()(sd_bus_message* message) const noexcept { ::sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, UnrefMessage>;

/// The answer to a method without arguments; null where there is none.
Message call(sd_bus& bus, const char* method) {
    sd_bus_message* made = nullptr;
    if (::sd_bus_message_new_method_call(&bus, &made, "org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                                         "org.freedesktop.systemd1.Manager", method) < 0)
        return nullptr;
    const Message question(made);
    ::sd_bus_message_set_auto_start(question.get(), 0);
    sd_bus_message* answer = nullptr;
    if (::sd_bus_call(&bus, question.get(), kPatience, nullptr, &answer) < 0) return nullptr;
    return Message(answer);
}

/// Array of name, description, load state, active state, sub state, followed unit, path, job number, job
/// type, job path.
bool readUnits(sd_bus_message& answer, std::map<std::string, std::string>& states) {
    if (::sd_bus_message_enter_container(&answer, 'a', "(ssssssouso)") < 0) return false;
    const char* name = nullptr;
    const char* active = nullptr;
    int result = 0;
    while ((result = ::sd_bus_message_read(&answer, "(ssssssouso)", &name, nullptr, nullptr, &active, nullptr,
                                           nullptr, nullptr, nullptr, nullptr, nullptr)) > 0)
        states.emplace(name, active);
    return result == 0;
}

/// Array of path and state.
bool readUnitFileStates(sd_bus_message& answer, std::map<std::string, std::string>& states) {
    if (::sd_bus_message_enter_container(&answer, 'a', "(ss)") < 0) return false;
    const char* path = nullptr;
    const char* state = nullptr;
    int result = 0;
    while ((result = ::sd_bus_message_read(&answer, "(ss)", &path, &state)) > 0) {
        const std::string text = path;
        states.emplace(text.substr(text.rfind('/') + 1), state);
    }
    return result == 0;
}

}  // namespace

void CloseBus::operator()(sd_bus* bus) const noexcept {
    ::sd_bus_close_unref(bus);
}

Bus openSystemBus() {
    sd_bus* bus = nullptr;
    return ::sd_bus_open_system(&bus) < 0 ? nullptr : Bus(bus);
}

std::optional<ManagedUnits> askManager(sd_bus& bus) {
    ManagedUnits units;
    const Message loaded = call(bus, "ListUnits");
    if (loaded == nullptr || !readUnits(*loaded, units.activeStates)) return std::nullopt;
    const Message onDisk = call(bus, "ListUnitFiles");
    if (onDisk == nullptr || !readUnitFileStates(*onDisk, units.fileStates)) return std::nullopt;
    return units;
}

}  // namespace corvalence::platform::linux_system
