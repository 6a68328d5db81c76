#pragma once

#include <cstddef>
#include <string_view>

namespace corvalence::base {

// Well-formed UTF-8 is that of RFC 3629: no overlong forms, no surrogates.

/// Bytes of the well-formed character that the text begins with; 0 where it begins with none.
std::size_t utf8Length(std::string_view text) noexcept;

bool isUtf8(std::string_view text) noexcept;

/// Code points of a UTF-8 text, bytes of any other.
std::size_t countCharacters(std::string_view text) noexcept;

}  // namespace corvalence::base
