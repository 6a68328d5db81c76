#include "platform/clock.h"

#include <gtest/gtest.h>

#include <ctime>

#include "fake_clock.h"
#include "platform/time_text.h"
#include "system_back_end.h"

namespace corvalence::test {
namespace {

/// The promises of a clock, from the system's own and from the one that tests put in its place.
class Clocks : public testing::Test {
  protected:
    ZonedClock universal_{ZonedClock::utc()};
    FakeClock fake_;
    platform::Clock* const clocks_[2] = {&universal_.clock(), &fake_};
};

TEST_F(Clocks, breakTimesDownByTheCalendar) {
    for (platform::Clock* clock : clocks_) {
        const auto textOf = [&](std::int64_t seconds) {
            return platform::formatFileTime(*clock, base::FileTime::fromUnix(seconds, 999'999'999));
        };
        EXPECT_EQ(textOf(0), "00:00:00   1.1.1970");
        EXPECT_EQ(textOf(-1), "Indeterminate");
        EXPECT_EQ(textOf(951868799), "23:59:59   29.2.2000");
        EXPECT_EQ(textOf(4107542400), "00:00:00   1.3.2100");
        EXPECT_EQ(platform::formatFileTime(*clock, {0}), "Indeterminate");
        EXPECT_EQ(platform::formatFileTime(*clock, {INT64_MAX}), "02:48:05   14.9.30828");
    }
}

TEST(MachineClock, tellsItsTimeAndTheSummerTimeOfTheMoment) {
    SystemBackEnd system;
    EXPECT_NEAR(static_cast<double>(system.clock.now().unixSeconds()),
                static_cast<double>(std::time(nullptr)), 5);
    ZonedClock elsewhere(ZonedClock::centralEurope());
    const auto hourAt = [&](std::int64_t seconds) {
        return elsewhere.clock().local(base::FileTime::fromUnix(seconds, 0)).hour;
    };
    EXPECT_EQ(hourAt(1704110400), 13);  // 2024-01-01 12:00 UTC
    EXPECT_EQ(hourAt(1719835200), 14);  // 2024-07-01 12:00 UTC
}

}  // namespace
}  // namespace corvalence::test
