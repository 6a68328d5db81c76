#include "base/number_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace corvalence::base {
namespace {

struct Quotient {
    std::uint64_t value;
    std::uint64_t divisor;
};

void PrintTo(const Quotient& q, std::ostream* out) {
    *out << q.value << " / " << q.divisor;
}

class TwoDecimals : public testing::TestWithParam<Quotient> {};

TEST_P(TwoDecimals, areThoseOfTheSystemsOwnPrinting) {
    const auto [value, divisor] = GetParam();
    std::array<char, 64> expected{};
    // long double holds 64 bits and the divisors are powers of two or ten's small ones: the quotient is
    // exact.
    std::snprintf(expected.data(), expected.size(), "%.2Lf",
                  static_cast<long double>(value) / static_cast<long double>(divisor));
    EXPECT_EQ(twoDecimals(value, divisor), expected.data());
}

INSTANTIATE_TEST_SUITE_P(Quotients, TwoDecimals,
                         testing::Values(Quotient{0, 1}, Quotient{1234, 1}, Quotient{UINT64_MAX, 1},
                                         Quotient{1, 1024}, Quotient{1023, 1024}, Quotient{1024, 1024},
                                         Quotient{1536, 1024}, Quotient{1, 8}, Quotient{3, 8}, Quotient{5, 8},
                                         Quotient{7, 8}, Quotient{1048575, 1048576},
                                         Quotient{(1U << 30) - 1, 1U << 30}, Quotient{UINT64_MAX, 1024},
                                         Quotient{127, 128}));

TEST(RightAligned, padsShortNumbersAndLeavesLongOnesWhole) {
    EXPECT_EQ(rightAligned(0, 12), "           0");
    EXPECT_EQ(rightAligned(123456789012, 12), "123456789012");
    EXPECT_EQ(rightAligned(UINT64_MAX, 12), "18446744073709551615");
}

struct Scan {
    std::string_view text;
    std::optional<std::int64_t> integer;
    std::optional<std::uint64_t> units;
};

void PrintTo(const Scan& scan, std::ostream* out) {
    *out << '"' << scan.text << '"';
}

class Scans : public testing::TestWithParam<Scan> {};

TEST_P(Scans, takeWhatADecimalScanTakes) {
    EXPECT_EQ(scanInteger(GetParam().text), GetParam().integer);
    EXPECT_EQ(scanWholeUnits(GetParam().text), GetParam().units);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Scans,
    testing::Values(Scan{"12", 12, 12}, Scan{"  \t 12 rest", 12, 12}, Scan{"1234.99", 1234, 1234},
                    Scan{"+7", 7, 7}, Scan{"-7", -7, {}}, Scan{"+-7", {}, {}}, Scan{"-+7", {}, {}},
                    Scan{"++7", {}, {}}, Scan{"", {}, {}}, Scan{"   ", {}, {}}, Scan{"+", {}, {}},
                    Scan{"-", {}, {}}, Scan{"x1", {}, {}}, Scan{"- 1", {}, {}}, Scan{"007", 7, 7},
                    Scan{"9223372036854775807", INT64_MAX, INT64_MAX},
                    Scan{"-9223372036854775808", INT64_MIN, {}}, Scan{"9223372036854775808", {}, 1ULL << 63},
                    Scan{"18446744073709551615.5", {}, UINT64_MAX}, Scan{"18446744073709551616", {}, {}}));

}  // namespace
}  // namespace corvalence::base
