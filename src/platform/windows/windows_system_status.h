#pragma once

#include "platform/system_status.h"

namespace corvalence::platform::windows_system {

class WindowsSystemStatus : public SystemStatus {
  public:
    std::optional<Capacity> memory() override;
    std::optional<Capacity> disk(const std::string& path) override;
};

}  // namespace corvalence::platform::windows_system
