#pragma once

#include "platform/system_registry.h"

namespace corvalence::platform::windows_system {

/// The machine's registry. Keys that have a NUL in their names are listed, but no call opens them.
class WindowsRegistry : public SystemRegistry {
  public:
    std::unique_ptr<RegistryKeyReader> open(RegistryRoot root, const std::string& keyPath) override;
};

}  // namespace corvalence::platform::windows_system
