#pragma once

#include "platform/clock.h"

namespace corvalence::test {

/// A clock that stands still until it is set, in a place whose local time is UTC.
class FakeClock : public platform::Clock {
  public:
    /// 2024-02-29 12:30:05 UTC.
    static constexpr std::int64_t kStart = 1'709'209'805;

    void set(base::FileTime time) { now_ = time; }
    void advance(std::chrono::milliseconds time) {
        elapsed_ += time;
        now_.ticks += static_cast<std::uint64_t>(time.count()) * (base::FileTime::kTicksPerSecond / 1000);
    }

    base::FileTime now() override { return now_; }
    base::LocalTime local(base::FileTime time) override;
    std::chrono::milliseconds elapsed() override { return elapsed_; }
    /// Passes the time without waiting.
    void sleep(std::chrono::milliseconds time) override { advance(time); }

  private:
    base::FileTime now_ = base::FileTime::fromUnix(kStart, 0);
    std::chrono::milliseconds elapsed_{0};
};

}  // namespace corvalence::test
