#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace corvalence::base {

/// A point in time as records keep it: units of 100 ns since 1601-01-01 00:00 UTC, written as two signed
/// 32-bit halves.
struct FileTime {
    std::uint64_t ticks = 0;

    static constexpr std::uint64_t kTicksPerSecond = 10'000'000;
    /// 1970-01-01 00:00 UTC in ticks.
    static constexpr std::uint64_t kUnixEpoch = 116'444'736'000'000'000;

    static constexpr FileTime fromHalves(std::int32_t high, std::int32_t low) noexcept {
        return {(std::uint64_t{static_cast<std::uint32_t>(high)} << 32) | static_cast<std::uint32_t>(low)};
    }
    /// From seconds since 1970 and nanoseconds. Times before 1601 become 0.
    static FileTime fromUnix(std::int64_t seconds, std::uint32_t nanoseconds) noexcept;

    constexpr std::int32_t high() const noexcept { return static_cast<std::int32_t>(ticks >> 32); }
    constexpr std::int32_t low() const noexcept { return static_cast<std::int32_t>(ticks & 0xFFFF'FFFFU); }
    /// Whole seconds since 1970-01-01, rounded down; negative before it.
    std::int64_t unixSeconds() const noexcept;

    auto operator<=>(const FileTime&) const = default;
};

/// A FileTime broken down in the machine's time zone.
struct LocalTime {
    int year = 0;
    int month = 0;  // 1 to 12
    int day = 0;    // 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;
};

/// "09:05:07   3.11.2004": two digits each for the time, three blanks, the date without padding. A year below
/// 1970 gives "Indeterminate".
std::string timeText(const LocalTime& time);

}  // namespace corvalence::base
