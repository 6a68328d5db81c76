#pragma once

#include <windows.h>

#include <optional>

#include "platform/clock.h"

namespace corvalence::platform::windows_system {

/// The machine's clocks.
class WindowsClock : public Clock {
  public:
    /// Local times are those of the machine's own time zone, or of the one given.
    WindowsClock() = default;
    explicit WindowsClock(const TIME_ZONE_INFORMATION& zone) : zone_(zone) {}

    base::FileTime now() override;
    base::LocalTime local(base::FileTime time) override;
    std::chrono::milliseconds elapsed() override;
    void sleep(std::chrono::milliseconds time) override;

  private:
    std::optional<TIME_ZONE_INFORMATION> zone_;
};

}  // namespace corvalence::platform::windows_system
