#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvalence::base {

// Numbers as records and messages carry them. Nothing here looks at the locale.

/// `value` over `divisor` with two decimals, rounded half to even as "%.2lf" does for exact quotients.
std::string twoDecimals(std::uint64_t value, std::uint64_t divisor = 1);

/// A decimal number right-aligned with blanks to `width` characters or more.
std::string rightAligned(std::uint64_t value, std::size_t width);

/// A whole decimal number with an optional sign; blanks in front and anything behind its digits are passed
/// over, as by a decimal scan. Empty where there are no digits or the value does not fit.
std::optional<std::int64_t> scanInteger(std::string_view text) noexcept;

/// A decimal number that may carry a fraction, cut to whole units ("1234.00" is 1234). The same rules as
/// scanInteger; a negative number gives nothing.
std::optional<std::uint64_t> scanWholeUnits(std::string_view text) noexcept;

}  // namespace corvalence::base
