#pragma once

#include <chrono>

namespace corvalence::schedule {

/// The timers of unattended checking, by their ids.
enum class Timer : int {
    StandardTick = 10,
    ContinuousTick = 105,
    Countdown = 107,
    BackgroundTick = 236,
    WarningOn = 246,  // the warning icon comes
    WarningOff = 247,
    Animation = 248,
};

inline constexpr std::chrono::milliseconds kCountdownPeriod{950};
inline constexpr std::chrono::milliseconds kAnimationPeriod{170};
inline constexpr std::chrono::milliseconds kWarningPeriod{500};
inline constexpr std::chrono::milliseconds kFirstWarning{100};

/// What calls back after a time. Never while what it called before is still at work: a tick interrupts no
/// check.
class Timers {
  public:
    virtual ~Timers() = default;
    /// From now on every `period`; one that runs already begins anew.
    virtual void set(Timer timer, std::chrono::milliseconds period) = 0;
    /// Nothing happens for one that does not run.
    virtual void kill(Timer timer) = 0;
};

}  // namespace corvalence::schedule
