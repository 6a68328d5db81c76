#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

#include "fake_clock.h"
#include "platform/time_text.h"
#include "system_back_end.h"

namespace corvalence::test {
namespace {

using namespace std::chrono_literals;

/// Another time zone for the length of a test.
class TimeZone {
  public:
    explicit TimeZone(const char* name) { ::setenv("TZ", name, 1); }
    ~TimeZone() {
        ::unsetenv("TZ");
        ::tzset();
    }
};

template <typename Kind>
class ClockContract : public testing::Test {};

struct RealClock {
    TimeZone zone{"UTC0"};
    SystemBackEnd system;
    platform::Clock& clock = system.clock;
};
struct TestClock {
    FakeClock fake;
    platform::Clock& clock = fake;
};
using Clocks = testing::Types<RealClock, TestClock>;
TYPED_TEST_SUITE(ClockContract, Clocks);

TYPED_TEST(ClockContract, breaksTimesDownByTheCalendar) {
    TypeParam kind;
    const auto textOf = [&](std::int64_t seconds) {
        return platform::formatFileTime(kind.clock, base::FileTime::fromUnix(seconds, 999'999'999));
    };
    EXPECT_EQ(textOf(0), "00:00:00   1.1.1970");
    EXPECT_EQ(textOf(-1), "Indeterminate");
    EXPECT_EQ(textOf(-11644473600), "Indeterminate");
    EXPECT_EQ(textOf(1709209805), "12:30:05   29.2.2024");
    EXPECT_EQ(textOf(951782399), "23:59:59   28.2.2000");
    EXPECT_EQ(textOf(4107542400), "00:00:00   1.3.2100");
    EXPECT_EQ(platform::formatFileTime(kind.clock, {0}), "Indeterminate");
    EXPECT_EQ(platform::formatFileTime(kind.clock, {INT64_MAX}), "02:48:05   14.9.30828");
}

TYPED_TEST(ClockContract, passesAtLeastTheTimeThatIsSlept) {
    TypeParam kind;
    const auto wall = kind.clock.now();
    const auto begin = kind.clock.elapsed();
    kind.clock.sleep(30ms);
    EXPECT_GE(kind.clock.elapsed() - begin, 30ms);
    EXPECT_GT(kind.clock.now(), wall);
}

TEST(LinuxClock, tellsTheMachinesTime) {
    SystemBackEnd system;
    const auto expected = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    EXPECT_NEAR(static_cast<double>(system.clock.now().unixSeconds()), static_cast<double>(expected), 5);
}

TEST(LinuxClock, usesTheSummerTimeOfTheMomentItTells) {
    const TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    SystemBackEnd system;
    const auto hourOf = [&](std::int64_t seconds) {
        return system.clock.local(base::FileTime::fromUnix(seconds, 0)).hour;
    };
    EXPECT_EQ(hourOf(1704110400), 13);  // 2024-01-01 12:00 UTC
    EXPECT_EQ(hourOf(1719835200), 14);  // 2024-07-01 12:00 UTC
}

}  // namespace
}  // namespace corvalence::test
