#include "base/file_time.h"

namespace corvalence::base {

namespace {

void appendTwoDigits(std::string& text, int number) {
    text.push_back(static_cast<char>('0' + number / 10 % 10));
    text.push_back(static_cast<char>('0' + number % 10));
}

}  // namespace

FileTime FileTime::fromUnix(std::int64_t seconds, std::uint32_t nanoseconds) noexcept {
    constexpr auto kEpochSeconds = static_cast<std::int64_t>(kUnixEpoch / kTicksPerSecond);
    // Beyond this the ticks no longer fit; a file system may hold any number.
    constexpr auto kLastSecond =
        static_cast<std::int64_t>(INT64_MAX / static_cast<std::int64_t>(kTicksPerSecond));
    if (seconds < -kEpochSeconds) return {0};
    if (seconds > kLastSecond - kEpochSeconds - 1) return {INT64_MAX};
    return {static_cast<std::uint64_t>(seconds + kEpochSeconds) * kTicksPerSecond + nanoseconds / 100};
}

std::int64_t FileTime::unixSeconds() const noexcept {
    return static_cast<std::int64_t>(ticks / kTicksPerSecond) -
           static_cast<std::int64_t>(kUnixEpoch / kTicksPerSecond);
}

std::string timeText(const LocalTime& time) {
    if (time.year < 1970) return "Indeterminate";
    std::string text;
    appendTwoDigits(text, time.hour);
    text.push_back(':');
    appendTwoDigits(text, time.minute);
    text.push_back(':');
    appendTwoDigits(text, time.second);
    return text + "   " + std::to_string(time.day) + "." + std::to_string(time.month) + "." +
           std::to_string(time.year);
}

}  // namespace corvalence::base
