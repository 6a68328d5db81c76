#include <bit>
#include <utility>

#include "crypto/byte_order.h"
#include "crypto/sha2_round.h"
#include "crypto/sha_code.h"
#include "crypto/sha_tables.h"

namespace corvalence::crypto {
namespace {

// Rounds are unrolled by templates: with every index known, the working words stay in registers and the
// sixteen message words are renewed in place.

/// The function and constant of each of SHA-1's four stretches of 20 rounds (FIPS 180-4, 4.1.1 and 4.2.1).
template <std::size_t Stretch>
[[gnu::always_inline]] inline std::uint32_t sha1Mix(std::uint32_t b, std::uint32_t c,
                                                    std::uint32_t d) noexcept {
    if constexpr (Stretch == 0) return (((c ^ d) & b) ^ d) + 0x5A827999;
    if constexpr (Stretch == 1) return (b ^ c ^ d) + 0x6ED9EBA1;
    if constexpr (Stretch == 2) return (b & c) + (d & (b ^ c)) + 0x8F1BBCDC;
    return (b ^ c ^ d) + 0xCA62C1D6;
}

template <std::size_t Round>
[[gnu::always_inline]] inline void sha1Round(std::uint32_t* s, std::uint32_t* w,
                                             const std::uint8_t* block) noexcept {
    constexpr std::size_t kFirst = 5 - Round % 5;
    std::uint32_t& word = w[Round % 16];
    if constexpr (Round < 16) {
        word = loadWord<std::uint32_t, std::endian::big>(block + 4 * Round);
    } else {
        word = std::rotl(word ^ w[(Round + 2) % 16] ^ w[(Round + 8) % 16] ^ w[(Round + 13) % 16], 1);
    }
    std::uint32_t& b = s[(kFirst + 1) % 5];
    std::uint32_t& e = s[(kFirst + 4) % 5];
    e += word;
    e += sha1Mix<Round / 20>(b, s[(kFirst + 2) % 5], s[(kFirst + 3) % 5]);
    e += std::rotl(s[kFirst % 5], 5);
    b = std::rotl(b, 30);
}

template <std::size_t... Rounds>
[[gnu::always_inline]] inline void sha1Block(std::uint32_t* s, const std::uint8_t* block,
                                             std::index_sequence<Rounds...>) noexcept {
    std::uint32_t w[16];
    (sha1Round<Rounds>(s, w, block), ...);
}

void compressSha1(std::uint32_t* state, const std::uint8_t* blocks, std::size_t count) noexcept {
    for (; count > 0; --count, blocks += 64) {
        std::uint32_t s[5] = {state[0], state[1], state[2], state[3], state[4]};
        sha1Block(s, blocks, std::make_index_sequence<80>());
        state[0] += s[0], state[1] += s[1], state[2] += s[2], state[3] += s[3], state[4] += s[4];
    }
}

template <typename Sha, std::size_t Round, bool Renew>
[[gnu::always_inline]] inline void sha2Round(Sha2State<Sha>& s, typename Sha::Word* w,
                                             const typename Sha::Word* constants) noexcept {
    if constexpr (Renew) {
        w[Round] +=
            Sha::sigma1(w[(Round + 14) % 16]) + w[(Round + 9) % 16] + Sha::sigma0(w[(Round + 1) % 16]);
    }
    s.template round<Round>(w[Round] + constants[Round]);
}

template <typename Sha, bool Renew, std::size_t... Rounds>
[[gnu::always_inline]] inline void sha2Rounds(Sha2State<Sha>& s, typename Sha::Word* w,
                                              const typename Sha::Word* constants,
                                              std::index_sequence<Rounds...>) noexcept {
    (sha2Round<Sha, Rounds, Renew>(s, w, constants), ...);
}

template <typename Sha>
void compressSha2(typename Sha::Word* state, const std::uint8_t* blocks, std::size_t count) noexcept {
    using Word = typename Sha::Word;
    constexpr auto kSixteen = std::make_index_sequence<16>();
    for (; count > 0; --count, blocks += 16 * sizeof(Word)) {
        Word w[16];
        for (std::size_t i = 0; i < 16; ++i)
            w[i] = loadWord<Word, std::endian::big>(blocks + sizeof(Word) * i);
        Sha2State<Sha> s(state);
        sha2Rounds<Sha, false>(s, w, Sha::kConstants.data(), kSixteen);
        for (std::size_t i = 16; i < Sha::kConstants.size(); i += 16) {
            sha2Rounds<Sha, true>(s, w, Sha::kConstants.data() + i, kSixteen);
        }
        s.addTo(state);
    }
}

}  // namespace

ShaCode portableShaCode() noexcept {
    return {compressSha1, compressSha2<Sha256>, compressSha2<Sha512>};
}

}  // namespace corvalence::crypto
