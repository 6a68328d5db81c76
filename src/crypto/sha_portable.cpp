#include <bit>

#include "crypto/byte_order.h"
#include "crypto/sha_code.h"
#include "crypto/sha_tables.h"

namespace corvalence::crypto {
namespace {

// One round of SHA-1 in each of the four stretches of 20 (FIPS 180-4, 4.1.1 and 4.2.1).
template <std::size_t Stretch>
std::uint32_t mix(std::uint32_t b, std::uint32_t c, std::uint32_t d) noexcept {
    if constexpr (Stretch == 0) return (((c ^ d) & b) ^ d) + 0x5A827999;
    if constexpr (Stretch == 1) return (b ^ c ^ d) + 0x6ED9EBA1;
    if constexpr (Stretch == 2) return ((b & c) | (d & (b | c))) + 0x8F1BBCDC;
    return (b ^ c ^ d) + 0xCA62C1D6;
}

template <std::size_t Stretch>
void sha1Stretch(std::array<std::uint32_t, 5>& s, const std::uint32_t* words) noexcept {
    auto [a, b, c, d, e] = s;
    for (std::size_t i = 0; i < 20; ++i) {
        const std::uint32_t next = std::rotl(a, 5) + mix<Stretch>(b, c, d) + e + words[i];
        e = d;
        d = c;
        c = std::rotl(b, 30);
        b = a;
        a = next;
    }
    s = {a, b, c, d, e};
}

void compressSha1(std::uint32_t* state, const std::uint8_t* blocks, std::size_t count) noexcept {
    for (; count > 0; --count, blocks += 64) {
        std::uint32_t words[80];
        for (std::size_t i = 0; i < 16; ++i)
            words[i] = loadWord<std::uint32_t, std::endian::big>(blocks + 4 * i);
        for (std::size_t i = 16; i < 80; ++i) {
            words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
        }
        std::array<std::uint32_t, 5> s = {state[0], state[1], state[2], state[3], state[4]};
        sha1Stretch<0>(s, words);
        sha1Stretch<1>(s, words + 20);
        sha1Stretch<2>(s, words + 40);
        sha1Stretch<3>(s, words + 60);
        for (std::size_t i = 0; i < 5; ++i)
            state[i] += s[i];
    }
}

// The two widths of SHA-2 differ in their rotations and in nothing else (FIPS 180-4, 4.1.2 and 4.1.3).
struct Sha256 {
    using Word = std::uint32_t;
    static constexpr auto& kConstants = kSha256Constants;
    static Word sum0(Word x) noexcept { return std::rotr(x, 2) ^ std::rotr(x, 13) ^ std::rotr(x, 22); }
    static Word sum1(Word x) noexcept { return std::rotr(x, 6) ^ std::rotr(x, 11) ^ std::rotr(x, 25); }
    static Word sigma0(Word x) noexcept { return std::rotr(x, 7) ^ std::rotr(x, 18) ^ (x >> 3); }
    static Word sigma1(Word x) noexcept { return std::rotr(x, 17) ^ std::rotr(x, 19) ^ (x >> 10); }
};

struct Sha512 {
    using Word = std::uint64_t;
    static constexpr auto& kConstants = kSha512Constants;
    static Word sum0(Word x) noexcept { return std::rotr(x, 28) ^ std::rotr(x, 34) ^ std::rotr(x, 39); }
    static Word sum1(Word x) noexcept { return std::rotr(x, 14) ^ std::rotr(x, 18) ^ std::rotr(x, 41); }
    static Word sigma0(Word x) noexcept { return std::rotr(x, 1) ^ std::rotr(x, 8) ^ (x >> 7); }
    static Word sigma1(Word x) noexcept { return std::rotr(x, 19) ^ std::rotr(x, 61) ^ (x >> 6); }
};

template <typename Sha>
void compressSha2(typename Sha::Word* state, const std::uint8_t* blocks, std::size_t count) noexcept {
    using Word = typename Sha::Word;
    constexpr std::size_t kRounds = Sha::kConstants.size();
    for (; count > 0; --count, blocks += 16 * sizeof(Word)) {
        Word words[kRounds];
        for (std::size_t i = 0; i < 16; ++i)
            words[i] = loadWord<Word, std::endian::big>(blocks + sizeof(Word) * i);
        for (std::size_t i = 16; i < kRounds; ++i) {
            words[i] = Sha::sigma1(words[i - 2]) + words[i - 7] + Sha::sigma0(words[i - 15]) + words[i - 16];
        }
        Word a = state[0], b = state[1], c = state[2], d = state[3];
        Word e = state[4], f = state[5], g = state[6], h = state[7];
        for (std::size_t i = 0; i < kRounds; ++i) {
            const Word first = h + Sha::sum1(e) + (((f ^ g) & e) ^ g) + Sha::kConstants[i] + words[i];
            const Word second = Sha::sum0(a) + ((a & b) | (c & (a | b)));
            h = g, g = f, f = e, e = d + first;
            d = c, c = b, b = a, a = first + second;
        }
        const Word after[8] = {a, b, c, d, e, f, g, h};
        for (std::size_t i = 0; i < 8; ++i)
            state[i] += after[i];
    }
}

}  // namespace

ShaCode portableShaCode() noexcept {
    return {compressSha1, compressSha2<Sha256>, compressSha2<Sha512>};
}

}  // namespace corvalence::crypto
