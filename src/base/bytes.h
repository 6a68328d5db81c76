#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvalence::base {

using ByteView = std::span<const std::uint8_t>;
using ByteSpan = std::span<std::uint8_t>;

/// The bytes of a text, without its terminator.
inline ByteView bytesOf(std::string_view text) noexcept {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// The text that a run of bytes holds; valid as long as the bytes are.
inline std::string_view textOf(ByteView bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace corvalence::base
