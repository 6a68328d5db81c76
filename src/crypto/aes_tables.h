#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace corvalence::crypto {

// Tables of FIPS 197, made while compiling. A column of the state is one word, its first byte in the low
// bits.

using AesBox = std::array<std::uint8_t, 256>;
using AesWords = std::array<std::uint32_t, 256>;

/// Product of two elements of the cipher's field (FIPS 197, 4.2).
constexpr std::uint8_t aesProduct(unsigned a, unsigned b) noexcept {
    unsigned product = 0;
    for (; b != 0; b >>= 1) {
        if ((b & 1) != 0) product ^= a;
        a = (a << 1) ^ ((a & 0x80) != 0 ? 0x11Bu : 0u);
    }
    return static_cast<std::uint8_t>(product);
}

constexpr AesBox makeAesSubstitution() noexcept {
    AesBox box{};
    // 3 generates the field's multiplicative group and 0xF6 is its inverse, so the pair walks through all
    // inverses.
    std::uint8_t element = 1;
    std::uint8_t inverse = 1;
    do {
        element = aesProduct(element, 0x03);
        inverse = aesProduct(inverse, 0xF6);
        std::uint8_t image = 0x63;
        for (int turn = 0; turn < 5; ++turn)
            image = static_cast<std::uint8_t>(image ^ std::rotl(inverse, turn));
        box[element] = image;
    } while (element != 1);
    box[0] = 0x63;
    return box;
}

constexpr AesBox makeAesInverse(const AesBox& box) noexcept {
    AesBox inverse{};
    for (std::size_t i = 0; i < box.size(); ++i)
        inverse[box[i]] = static_cast<std::uint8_t>(i);
    return inverse;
}

/// Substitution and column mix in one look-up for the byte of row `row`; `factors` is the mix's first column.
constexpr AesWords makeAesRound(const AesBox& box, const std::array<unsigned, 4>& factors, int row) noexcept {
    AesWords words{};
    for (std::size_t i = 0; i < box.size(); ++i) {
        std::uint32_t column = 0;
        for (std::size_t k = 0; k < 4; ++k)
            column |= std::uint32_t{aesProduct(box[i], factors[k])} << (8 * k);
        words[i] = std::rotl(column, 8 * row);
    }
    return words;
}

constexpr std::array<AesWords, 4> makeAesRounds(const AesBox& box,
                                                const std::array<unsigned, 4>& factors) noexcept {
    return {makeAesRound(box, factors, 0), makeAesRound(box, factors, 1), makeAesRound(box, factors, 2),
            makeAesRound(box, factors, 3)};
}

inline constexpr AesBox kAesBox = makeAesSubstitution();
inline constexpr AesBox kAesInverseBox = makeAesInverse(kAesBox);
inline constexpr std::array<AesWords, 4> kAesEncryption = makeAesRounds(kAesBox, {0x02, 0x01, 0x01, 0x03});
inline constexpr std::array<AesWords, 4> kAesDecryption =
    makeAesRounds(kAesInverseBox, {0x0E, 0x09, 0x0D, 0x0B});

static_assert(kAesBox[0x53] == 0xED && kAesInverseBox[0xED] == 0x53);

}  // namespace corvalence::crypto
