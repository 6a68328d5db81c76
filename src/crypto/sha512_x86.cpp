#if defined(__x86_64__)

#include "crypto/sha512_x86.h"

#include <immintrin.h>

#include <utility>

#include "crypto/sha2_round.h"

namespace corvalence::crypto {
namespace {

#define CORVALENCE_STEP [[gnu::target("avx,bmi2"), gnu::always_inline]] inline

// The message words are made two at a time in vectors, the rounds are scalar: the two use different units of
// the processor, so each vector step stands between two rounds. A wider vector would not do, as a pair of
// words hangs on the pair before it.

/// Leaves the rounds' inputs, message words with their constants added, where the scalar code reads them.
CORVALENCE_STEP void keep(std::uint64_t* inputs, __m128i words, const std::uint64_t* constants) noexcept {
    const __m128i both = _mm_loadu_si128(reinterpret_cast<const __m128i*>(constants));
    _mm_store_si128(reinterpret_cast<__m128i*>(inputs), _mm_add_epi64(words, both));
}

template <int Bits>
CORVALENCE_STEP __m128i rotated(__m128i words) noexcept {
    return _mm_xor_si128(_mm_srli_epi64(words, Bits), _mm_slli_epi64(words, 64 - Bits));
}

CORVALENCE_STEP __m128i sigma0(__m128i words) noexcept {
    const __m128i byByte = _mm_set_epi64x(0x080F0E0D0C0B0A09, 0x0007060504030201);
    return _mm_xor_si128(_mm_xor_si128(rotated<1>(words), _mm_srli_epi64(words, 7)),
                         _mm_shuffle_epi8(words, byByte));
}

CORVALENCE_STEP __m128i sigma1(__m128i words) noexcept {
    return _mm_xor_si128(_mm_xor_si128(rotated<19>(words), _mm_srli_epi64(words, 6)), rotated<61>(words));
}

/// x holds the last eight pairs in a ring: puts the next pair where the oldest stands, at `Place`.
template <std::size_t Place>
CORVALENCE_STEP void renew(__m128i* x) noexcept {
    __m128i& oldest = x[Place];
    const __m128i fifteenBack = _mm_alignr_epi8(x[(Place + 1) % 8], oldest, 8);
    const __m128i sevenBack = _mm_alignr_epi8(x[(Place + 5) % 8], x[(Place + 4) % 8], 8);
    __m128i sum = _mm_add_epi64(_mm_add_epi64(oldest, sevenBack), sigma0(fifteenBack));
    // The newest pair comes last: an empty instruction that takes the sum as it stands keeps it so.
    __asm__("" : "+x"(sum));
    oldest = _mm_add_epi64(sum, sigma1(x[(Place + 7) % 8]));
}

template <std::size_t Place>
CORVALENCE_STEP void load(__m128i* x, const std::uint8_t* block) noexcept {
    const __m128i bigEndian = _mm_set_epi64x(0x08090A0B0C0D0E0F, 0x0001020304050607);
    x[Place] =
        _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(block + 16 * Place)), bigEndian);
}

template <std::size_t Place>
CORVALENCE_STEP void roundsAndRenewal(Sha2State<Sha512>& s, __m128i* x, std::uint64_t* inputs,
                                      const std::uint64_t* constants) noexcept {
    s.round<2 * Place>(inputs[2 * Place]);
    renew<Place>(x);
    s.round<2 * Place + 1>(inputs[2 * Place + 1]);
    keep(inputs + 2 * Place, x[Place], constants + 2 * Place);
}

template <std::size_t Place>
CORVALENCE_STEP void rounds(Sha2State<Sha512>& s, const std::uint64_t* inputs) noexcept {
    s.round<2 * Place>(inputs[2 * Place]);
    s.round<2 * Place + 1>(inputs[2 * Place + 1]);
}

template <std::size_t... Places>
CORVALENCE_STEP void oneBlock(std::uint64_t* state, const std::uint8_t* block,
                              std::index_sequence<Places...>) noexcept {
    const std::uint64_t* constants = kSha512Constants.data();
    alignas(16) std::uint64_t inputs[16];
    __m128i x[8];
    (load<Places>(x, block), ...);
    (keep(inputs + 2 * Places, x[Places], constants + 2 * Places), ...);
    Sha2State<Sha512> s(state);
    for (std::size_t done = 16; done < 80; done += 16) {
        (roundsAndRenewal<Places>(s, x, inputs, constants + done), ...);
    }
    (rounds<Places>(s, inputs), ...);
    s.addTo(state);
}

}  // namespace

[[gnu::target("avx,bmi2")]] void compressSha512Avx(std::uint64_t* state, const std::uint8_t* blocks,
                                                   std::size_t count) noexcept {
    for (; count > 0; --count, blocks += 128) {
        oneBlock(state, blocks, std::make_index_sequence<8>());
    }
}

#undef CORVALENCE_STEP

}  // namespace corvalence::crypto

#endif
