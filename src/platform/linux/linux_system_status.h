#pragma once

#include "platform/system_status.h"

namespace corvalence::platform::linux_system {

class LinuxSystemStatus : public SystemStatus {
  public:
    std::optional<Capacity> memory() override;
    std::optional<Capacity> disk(const std::string& path) override;
};

}  // namespace corvalence::platform::linux_system
