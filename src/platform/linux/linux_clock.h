#pragma once

#include "platform/clock.h"

namespace corvalence::platform::linux_system {

/// The machine's clocks; the time zone is the one of the environment at construction.
class LinuxClock : public Clock {
  public:
    LinuxClock();

    base::FileTime now() override;
    base::LocalTime local(base::FileTime time) override;
    std::chrono::milliseconds elapsed() override;
    void sleep(std::chrono::milliseconds time) override;
};

}  // namespace corvalence::platform::linux_system
