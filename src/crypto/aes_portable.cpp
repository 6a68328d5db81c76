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
template <std::size_t Shift, std::size_t Column, std::size_t Row>
[[gnu::always_inline]] inline std::size_t byteOf(const State& state) noexcept {
    return (state[(Column + Row * Shift) % 4] >> (8 * Row)) & 0xFF;
}

struct Encryption {
    static constexpr std::size_t kShift = 1;
    static constexpr const std::array<AesWords, 4>& kTables = kAesEncryption;
    static constexpr const AesBox& kBox = kAesBox;
};

struct Decryption {
    static constexpr std::size_t kShift = 3;
    static constexpr const std::array<AesWords, 4>& kTables = kAesDecryption;
    static constexpr const AesBox& kBox = kAesInverseBox;
};

template <typename Way, std::size_t Column>
[[gnu::always_inline]] inline std::uint32_t mixedColumn(const State& state) noexcept {
    constexpr std::size_t kShift = Way::kShift;
    return Way::kTables[0][byteOf<kShift, Column, 0>(state)] ^
           Way::kTables[1][byteOf<kShift, Column, 1>(state)] ^
           Way::kTables[2][byteOf<kShift, Column, 2>(state)] ^
           Way::kTables[3][byteOf<kShift, Column, 3>(state)];
}

template <typename Way, std::size_t Column>
[[gnu::always_inline]] inline std::uint32_t lastColumn(const State& state) noexcept {
    constexpr std::size_t kShift = Way::kShift;
    return std::uint32_t{Way::kBox[byteOf<kShift, Column, 0>(state)]} |
           std::uint32_t{Way::kBox[byteOf<kShift, Column, 1>(state)]} << 8 |
           std::uint32_t{Way::kBox[byteOf<kShift, Column, 2>(state)]} << 16 |
           std::uint32_t{Way::kBox[byteOf<kShift, Column, 3>(state)]} << 24;
}

template <typename Way>
State transform(AesKeys keys, State state) noexcept {
    const std::uint32_t* key = keys.words;
    state = state ^ State { key[0], key[1], key[2], key[3] };
    for (int round = 1; round < keys.rounds; ++round) {
        key += 4;
        state = State{mixedColumn<Way, 0>(state) ^ key[0], mixedColumn<Way, 1>(state) ^ key[1],
                      mixedColumn<Way, 2>(state) ^ key[2], mixedColumn<Way, 3>(state) ^ key[3]};
    }
    key += 4;
    return {lastColumn<Way, 0>(state) ^ key[0], lastColumn<Way, 1>(state) ^ key[1],
            lastColumn<Way, 2>(state) ^ key[2], lastColumn<Way, 3>(state) ^ key[3]};
}

void encrypt(AesKeys keys, const std::uint8_t* in, std::uint8_t* out, std::size_t count,
             std::uint8_t* chain) noexcept {
    State previous = loadState(chain);
    for (; count > 0; --count, in += 16, out += 16) {
        previous = transform<Encryption>(keys, loadState(in) ^ previous);
        storeState(previous, out);
    }
    storeState(previous, chain);
}

void decrypt(AesKeys keys, const std::uint8_t* in, std::uint8_t* out, std::size_t count,
             std::uint8_t* chain) noexcept {
    State previous = loadState(chain);
    for (; count > 0; --count, in += 16, out += 16) {
        const State block = loadState(in);
        storeState(transform<Decryption>(keys, block) ^ previous, out);
        previous = block;
    }
    storeState(previous, chain);
}

}  // namespace

AesCode portableAesCode() noexcept {
    return {encrypt, decrypt};
}

}  // namespace corvalence::crypto
