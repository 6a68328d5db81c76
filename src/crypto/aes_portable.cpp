#include <algorithm>
#include <array>

#include "crypto/aes_code.h"
#include "crypto/aes_tables.h"
#include "crypto/byte_order.h"

namespace corvalence::crypto {
namespace {

using State = std::array<std::uint32_t, 4>;

State loadState(const std::uint8_t* bytes) noexcept {
    State state;
    for (std::size_t i = 0; i < 4; ++i)
        state[i] = loadWord<std::uint32_t, std::endian::little>(bytes + 4 * i);
    return state;
}

void storeState(const State& state, std::uint8_t* bytes) noexcept {
    for (std::size_t i = 0; i < 4; ++i)
        storeWord<std::endian::little>(state[i], bytes + 4 * i);
}

State operator^(const State& left, const State& right) noexcept {
    return {left[0] ^ right[0], left[1] ^ right[1], left[2] ^ right[2], left[3] ^ right[3]};
}

// Row r of column i comes from column i + r * Shift: 1 shifts the rows as encryption does, 3 turns that back.
template <std::size_t Shift>
std::size_t rowByte(const State& state, std::size_t column, std::size_t row) noexcept {
    return (state[(column + row * Shift) % 4] >> (8 * row)) & 0xFF;
}

template <std::size_t Shift>
State transform(AesKeys keys, const std::array<AesWords, 4>& tables, const AesBox& box,
                State state) noexcept {
    const std::uint32_t* key = keys.words;
    for (std::size_t i = 0; i < 4; ++i)
        state[i] ^= *key++;
    for (int round = 1; round < keys.rounds; ++round) {
        const State before = state;
        for (std::size_t i = 0; i < 4; ++i) {
            state[i] = tables[0][rowByte<Shift>(before, i, 0)] ^ tables[1][rowByte<Shift>(before, i, 1)] ^
                       tables[2][rowByte<Shift>(before, i, 2)] ^ tables[3][rowByte<Shift>(before, i, 3)] ^
                       *key++;
        }
    }
    State last;
    for (std::size_t i = 0; i < 4; ++i) {
        last[i] = *key++;
        for (std::size_t row = 0; row < 4; ++row) {
            last[i] ^= std::uint32_t{box[rowByte<Shift>(state, i, row)]} << (8 * row);
        }
    }
    return last;
}

void encrypt(AesKeys keys, const std::uint8_t* in, std::uint8_t* out, std::size_t count,
             std::uint8_t* chain) noexcept {
    State previous = loadState(chain);
    for (; count > 0; --count, in += 16, out += 16) {
        previous = transform<1>(keys, kAesEncryption, kAesBox, loadState(in) ^ previous);
        storeState(previous, out);
    }
    storeState(previous, chain);
}

void decrypt(AesKeys keys, const std::uint8_t* in, std::uint8_t* out, std::size_t count,
             std::uint8_t* chain) noexcept {
    State previous = loadState(chain);
    for (; count > 0; --count, in += 16, out += 16) {
        const State block = loadState(in);
        storeState(transform<3>(keys, kAesDecryption, kAesInverseBox, block) ^ previous, out);
        previous = block;
    }
    storeState(previous, chain);
}

}  // namespace

AesCode portableAesCode() noexcept {
    return {encrypt, decrypt};
}

}  // namespace corvalence::crypto
