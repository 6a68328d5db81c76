#include "base/number_text.h"

#include <algorithm>
#include <charconv>

namespace corvalence::base {

namespace {

template <typename Number>
std::optional<Number> scan(std::string_view text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    if (text.substr(0, 1) == "+") {
        text.remove_prefix(1);
        if (text.substr(0, 1) == "-") return std::nullopt;
    }
    Number value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc()) return std::nullopt;
    return value;
}

}  // namespace

std::string twoDecimals(std::uint64_t value, std::uint64_t divisor) {
    std::uint64_t whole = value / divisor;
    const std::uint64_t rest = value % divisor;
    // rest < divisor, and divisors are at most 2^30, so the product fits.
    const std::uint64_t hundredths = rest * 100;
    std::uint64_t cents = hundredths / divisor;
    const std::uint64_t twice = hundredths % divisor * 2;
    if (twice > divisor || (twice == divisor && cents % 2 == 1)) ++cents;
    if (cents == 100) {
        cents = 0;
        ++whole;
    }
    std::string text = std::to_string(whole) + ".";
    text.push_back(static_cast<char>('0' + cents / 10));
    text.push_back(static_cast<char>('0' + cents % 10));
    return text;
}

std::string rightAligned(std::uint64_t value, std::size_t width) {
    std::string digits = std::to_string(value);
    return digits.size() < width ? std::string(width - digits.size(), ' ') + digits : digits;
}

std::optional<std::int64_t> scanInteger(std::string_view text) noexcept {
    return scan<std::int64_t>(text);
}

std::optional<std::uint64_t> scanWholeUnits(std::string_view text) noexcept {
    return scan<std::uint64_t>(text);
}

}  // namespace corvalence::base
