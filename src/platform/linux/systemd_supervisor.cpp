#include "platform/linux/systemd_supervisor.h"

#include <systemd/sd-daemon.h>

namespace corvalence::platform::linux_system {

void SystemdSupervisor::ready() {
    sd_notify(0, "READY=1");
}

void SystemdSupervisor::status(const std::string& text) {
    sd_notify(0, ("STATUS=" + text).c_str());
}

void SystemdSupervisor::stopping() {
    sd_notify(0, "STOPPING=1");
}

}  // namespace corvalence::platform::linux_system
