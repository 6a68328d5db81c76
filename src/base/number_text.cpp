#include "base/number_text.h"

#include <charconv>
#include <limits>

namespace corvalence::base {

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
    const std::size_t start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos) return std::nullopt;
    text.remove_prefix(start);
    if (text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return std::nullopt;
    }
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc()) return std::nullopt;
    return value;
}

std::optional<std::uint64_t> scanWholeUnits(std::string_view text) noexcept {
    const std::size_t start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos) return std::nullopt;
    text.remove_prefix(start);
    std::uint64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc()) return std::nullopt;
    return value;
}

}  // namespace corvalence::base
