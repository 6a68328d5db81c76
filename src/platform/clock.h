#pragma once

#include <chrono>

#include "base/file_time.h"

namespace corvalence::platform {

class Clock {
  public:
    virtual ~Clock() = default;

    virtual base::FileTime now() = 0;
    /// In the machine's time zone, with the summer time that held at that moment.
    virtual base::LocalTime local(base::FileTime time) = 0;
    /// Grows evenly whatever happens to the wall clock.
    virtual std::chrono::milliseconds elapsed() = 0;
    virtual void sleep(std::chrono::milliseconds time) = 0;
};

}  // namespace corvalence::platform
