#pragma once

#include <string>
#include <string_view>

#include "base/bytes.h"

namespace corvalence::base {

/// Lower-case hexadecimal text, high nibble first, two characters a byte, no separators.
std::string hexText(ByteView bytes);

/// Whether every character is one of 0-9, a-f, A-F. True for the empty text.
bool isHexText(std::string_view text) noexcept;

}  // namespace corvalence::base
