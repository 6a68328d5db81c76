#include "fake_clock.h"

namespace corvalence::test {

base::LocalTime FakeClock::local(base::FileTime time) {
    const std::chrono::sys_seconds moment{std::chrono::seconds{time.unixSeconds()}};
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss clock{moment - day};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            static_cast<int>(clock.hours().count()),
            static_cast<int>(clock.minutes().count()),
            static_cast<int>(clock.seconds().count())};
}

}  // namespace corvalence::test
