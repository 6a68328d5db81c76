#pragma once

#include "platform/file_types.h"

namespace corvalence::platform::windows_system {

/// File types by the classes root of the registry.
class RegistryFileTypes : public FileTypes {
  public:
    std::optional<std::string> typeText(std::string_view extension) override;
};

}  // namespace corvalence::platform::windows_system
