#include "base/file_time.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace corvalence::base {
namespace {

TEST(FileTime, standsAsTwoSignedHalvesAndComesBackWhole) {
    struct Moment {
        std::int64_t seconds;
        std::uint32_t nanoseconds;
        std::int32_t high, low;
    };
    constexpr Moment kMoments[] = {{0, 0, 27111902, -717324288},            // 1970-01-01
                                   {0, 199, 27111902, -717324287},          // cut to 100 ns
                                   {1000000000, 0, 29440209, 1157595136},   // 2001-09-09
                                   {-1, 999999900, 27111902, -717324289},   // before 1970
                                   {-11644473600, 0, 0, 0},                 // 1601-01-01
                                   {4294967295, 0, 37111902, -727324288}};  // 2106-02-07
    for (const auto& [seconds, nanoseconds, high, low] : kMoments) {
        SCOPED_TRACE(seconds);
        const FileTime time = FileTime::fromUnix(seconds, nanoseconds);
        EXPECT_EQ(time.high(), high);
        EXPECT_EQ(time.low(), low);
        EXPECT_EQ(FileTime::fromHalves(high, low), time);
        EXPECT_EQ(time.unixSeconds(), seconds);
    }
}

TEST(FileTime, keepsTimesWithinItsRange) {
    EXPECT_EQ(FileTime::fromUnix(-11644473601, 0).ticks, 0U);
    EXPECT_EQ(FileTime::fromUnix(std::numeric_limits<std::int64_t>::max(), 999999999).ticks, INT64_MAX);
    EXPECT_GT(FileTime::fromUnix(910000000000, 0), FileTime::fromUnix(909999999999, 999999999));
}

TEST(TimeText, padsTheClockButNotTheDate) {
    EXPECT_EQ(timeText({2004, 11, 3, 9, 5, 7}), "09:05:07   3.11.2004");
    EXPECT_EQ(timeText({1970, 1, 1, 0, 0, 0}), "00:00:00   1.1.1970");
    EXPECT_EQ(timeText({1969, 12, 31, 23, 59, 59}), "Indeterminate");
}

}  // namespace
}  // namespace corvalence::base
