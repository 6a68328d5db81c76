#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace corvalence::crypto {

inline std::uint32_t swapBytes(std::uint32_t word) noexcept {
    return __builtin_bswap32(word);
}
inline std::uint64_t swapBytes(std::uint64_t word) noexcept {
    return __builtin_bswap64(word);
}

/// A word of sizeof(Word) bytes at `bytes`, which may stand at any address, in the byte order that `Order`
/// names.
template <typename Word, std::endian Order>
inline Word loadWord(const std::uint8_t* bytes) noexcept {
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return Order == std::endian::native ? word : swapBytes(word);
}

template <std::endian Order, typename Word>
inline void storeWord(Word word, std::uint8_t* bytes) noexcept {
    if (Order != std::endian::native) word = swapBytes(word);
    std::memcpy(bytes, &word, sizeof word);
}

}  // namespace corvalence::crypto
