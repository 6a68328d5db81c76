#pragma once

#include <map>
#include <optional>

#include "platform/clock.h"
#include "schedule/timers.h"

namespace corvalence::schedule {

/// Timers by a clock that grows evenly, for a front without an event loop. A wall clock that jumps moves
/// none of them.
class TimerQueue : public Timers {
  public:
    explicit TimerQueue(platform::Clock& clock) : clock_(clock) {}

    void set(Timer timer, std::chrono::milliseconds period) override;
    void kill(Timer timer) override;

    /// The timer that has been due longest, if one is; its next period begins now, so that what long work
    /// made it miss is not made up for.
    std::optional<Timer> due();
    /// Until the next one is due; nothing while none runs.
    std::optional<std::chrono::milliseconds> wait() const;

  private:
    struct Entry {
        std::chrono::milliseconds period;
        std::chrono::milliseconds at;  // by elapsed()
    };

    std::map<Timer, Entry>::const_iterator next() const;

    platform::Clock& clock_;
    std::map<Timer, Entry> entries_;
};

}  // namespace corvalence::schedule
