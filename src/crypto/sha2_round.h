#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "crypto/sha_tables.h"

namespace corvalence::crypto {

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

/// The eight working words. Instead of moving them all along by one after a round, each round finds them one
/// place further; after eight rounds they stand where they began. Inlined whole, they live in registers.
template <typename Sha>
struct Sha2State {
    using Word = typename Sha::Word;

    Word words[8];
    Word bXorC;  // the second and third word's difference, which is the first two's of the round before

    [[gnu::always_inline]] explicit Sha2State(const Word* state) noexcept
        : words{state[0], state[1], state[2], state[3], state[4], state[5], state[6], state[7]},
          bXorC(state[1] ^ state[2]) {}

    /// `input` is the round's message word with its constant added.
    template <std::size_t Round>
    [[gnu::always_inline]] void round(Word input) noexcept {
        constexpr std::size_t kFirst = 8 - Round % 8;
        const Word a = words[kFirst % 8];
        const Word b = words[(kFirst + 1) % 8];
        const Word e = words[(kFirst + 4) % 8];
        const Word f = words[(kFirst + 5) % 8];
        const Word g = words[(kFirst + 6) % 8];
        Word& d = words[(kFirst + 3) % 8];
        Word& h = words[(kFirst + 7) % 8];
        h += input;
        h += ((f ^ g) & e) ^ g;
        h += Sha::sum1(e);
        d += h;
        const Word aXorB = a ^ b;
        h += b ^ (aXorB & bXorC);
        h += Sha::sum0(a);
        bXorC = aXorB;
    }

    [[gnu::always_inline]] void addTo(Word* state) const noexcept {
        state[0] += words[0], state[1] += words[1], state[2] += words[2], state[3] += words[3];
        state[4] += words[4], state[5] += words[5], state[6] += words[6], state[7] += words[7];
    }
};

}  // namespace corvalence::crypto
