#pragma once

#include "platform/auto_start.h"

namespace corvalence::platform::windows_system {

/// The value "Corvalence" among those that the system runs for the current user. Switched off it is blank,
/// not gone.
class RegistryAutoStart : public AutoStart {
  public:
    /// Its key lies below the key `below` of the current user, which ends in a backslash or is empty.
    explicit RegistryAutoStart(std::string below = {}) : below_(std::move(below)) {}

    bool enable(const std::string& program) override;
    bool disable() override;
    bool isEnabled() override;

  private:
    std::wstring key() const;

    std::string below_;
};

}  // namespace corvalence::platform::windows_system
