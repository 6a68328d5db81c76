#include "base/number_text.h"

#include <gtest/gtest.h>

namespace corvalence::base {
namespace {

// As the system's own printing of the quotient with two decimals: halves go to the even digit.
TEST(TwoDecimals, areRoundedHalfToEven) {
    EXPECT_EQ(twoDecimals(0, 1), "0.00");
    EXPECT_EQ(twoDecimals(1, 1024), "0.00");
    EXPECT_EQ(twoDecimals(1023, 1024), "1.00");
    EXPECT_EQ(twoDecimals(1536, 1024), "1.50");
    EXPECT_EQ(twoDecimals(1, 8), "0.12");
    EXPECT_EQ(twoDecimals(3, 8), "0.38");
    EXPECT_EQ(twoDecimals(127, 128), "0.99");
    EXPECT_EQ(twoDecimals((1U << 30) - 1, 1U << 30), "1.00");
    EXPECT_EQ(twoDecimals(UINT64_MAX, 1024), "18014398509481984.00");
}

TEST(RightAligned, padsShortNumbersAndLeavesLongOnesWhole) {
    EXPECT_EQ(rightAligned(0, 12), "           0");
    EXPECT_EQ(rightAligned(UINT64_MAX, 12), "18446744073709551615");
}

TEST(Scans, takeWhatADecimalScanTakes) {
    struct Scan {
        std::string_view text;
        std::optional<std::int64_t> integer;
        std::optional<std::uint64_t> units;
    };
    const Scan kScans[] = {{"  \t 12 rest", 12, 12},
                           {"1234.99", 1234, 1234},
                           {"+7", 7, 7},
                           {"-7", -7, {}},
                           {"+-7", {}, {}},
                           {"++7", {}, {}},
                           {"", {}, {}},
                           {"   ", {}, {}},
                           {"- 1", {}, {}},
                           {"x1", {}, {}},
                           {"-9223372036854775808", INT64_MIN, {}},
                           {"9223372036854775808", {}, 1ULL << 63},
                           {"18446744073709551616", {}, {}}};
    for (const Scan& scan : kScans) {
        EXPECT_EQ(scanInteger(scan.text), scan.integer) << scan.text;
        EXPECT_EQ(scanWholeUnits(scan.text), scan.units) << scan.text;
    }
}

}  // namespace
}  // namespace corvalence::base
