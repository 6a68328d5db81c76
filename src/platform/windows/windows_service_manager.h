#pragma once

#include "platform/service_manager.h"

namespace corvalence::platform::windows_system {

/// The service control manager, asked for no more than the right to look.
class WindowsServiceManager : public ServiceManager {
  public:
    std::vector<Service> services() override;
};

}  // namespace corvalence::platform::windows_system
