#pragma once

#include "platform/supervisor.h"

namespace corvalence::platform::linux_system {

/// The service manager that started this program, by the protocol of sd_notify(3).
class SystemdSupervisor : public Supervisor {
  public:
    void ready() override;
    void status(const std::string& text) override;
    void stopping() override;
};

}  // namespace corvalence::platform::linux_system
