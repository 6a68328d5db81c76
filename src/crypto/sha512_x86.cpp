#if defined(__x86_64__)

#include "crypto/sha512_x86.h"

#include <immintrin.h>

#include <utility>

#include "crypto/sha2_round.h"

namespace corvalence::crypto {
namespace {

#define CORVALENCE_AVX2 [[gnu::target("avx2,bmi2")]]
#define CORVALENCE_AVX2_STEP [[gnu::target("avx2,bmi2"), gnu::always_inline]] inline

// The message words of two blocks are made at once, two words of each in one vector: the first block's in the
// low half. The rounds are scalar. Those of the first block run between the vector steps, which use other
// units of the processor; those of the second block follow, their words being ready.

constexpr std::size_t kBlockSize = 128;
constexpr std::size_t kPairs = 40;  // of message words in a block

struct alignas(32) Pair {
    std::uint64_t first[2];   // of the first block, constants added
    std::uint64_t second[2];  // of the second
};

CORVALENCE_AVX2_STEP void keep(Pair& pair, __m256i words, const std::uint64_t* constants) noexcept {
    const __m128i both = _mm_loadu_si128(reinterpret_cast<const __m128i*>(constants));
    _mm256_store_si256(reinterpret_cast<__m256i*>(&pair),
                       _mm256_add_epi64(words, _mm256_broadcastsi128_si256(both)));
}

template <int Bits>
CORVALENCE_AVX2_STEP __m256i rotated(__m256i words) noexcept {
    return _mm256_xor_si256(_mm256_srli_epi64(words, Bits), _mm256_slli_epi64(words, 64 - Bits));
}

CORVALENCE_AVX2_STEP __m256i sigma0(__m256i words) noexcept {
    const __m256i byByte =
        _mm256_set_epi64x(0x080F0E0D0C0B0A09, 0x0007060504030201, 0x080F0E0D0C0B0A09, 0x0007060504030201);
    return _mm256_xor_si256(_mm256_xor_si256(rotated<1>(words), _mm256_srli_epi64(words, 7)),
                            _mm256_shuffle_epi8(words, byByte));
}

CORVALENCE_AVX2_STEP __m256i sigma1(__m256i words) noexcept {
    return _mm256_xor_si256(_mm256_xor_si256(rotated<19>(words), _mm256_srli_epi64(words, 6)),
                            rotated<61>(words));
}

/// The pair eight places on from place `Place`, put where that one stood. x holds the last eight pairs in a
/// ring.
template <std::size_t Place>
CORVALENCE_AVX2_STEP void renew(__m256i* x) noexcept {
    __m256i& oldest = x[Place];
    const __m256i fifteenBack = _mm256_alignr_epi8(x[(Place + 1) % 8], oldest, 8);
    const __m256i sevenBack = _mm256_alignr_epi8(x[(Place + 5) % 8], x[(Place + 4) % 8], 8);
    const __m256i sum = _mm256_add_epi64(_mm256_add_epi64(oldest, sevenBack), sigma0(fifteenBack));
    oldest = _mm256_add_epi64(sum, sigma1(x[(Place + 7) % 8]));
}

template <std::size_t Place>
CORVALENCE_AVX2_STEP void load(__m256i* x, const std::uint8_t* first, const std::uint8_t* second) noexcept {
    const __m256i bigEndian =
        _mm256_set_epi64x(0x08090A0B0C0D0E0F, 0x0001020304050607, 0x08090A0B0C0D0E0F, 0x0001020304050607);
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first + 16 * Place));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(second + 16 * Place));
    x[Place] = _mm256_shuffle_epi8(_mm256_set_m128i(high, low), bigEndian);
}

template <std::size_t Place>
CORVALENCE_AVX2_STEP void roundsAndRenewal(Sha2State<Sha512>& s, __m256i* x, Pair* pairs,
                                           const std::uint64_t* constants) noexcept {
    s.round<2 * Place>(pairs[Place].first[0]);
    renew<Place>(x);
    s.round<2 * Place + 1>(pairs[Place].first[1]);
    keep(pairs[Place + 8], x[Place], constants + 16 + 2 * Place);
}

template <std::size_t Place>
CORVALENCE_AVX2_STEP void rounds(Sha2State<Sha512>& s, const std::uint64_t* words) noexcept {
    s.round<2 * Place>(words[4 * Place]);
    s.round<2 * Place + 1>(words[4 * Place + 1]);
}

template <std::size_t... Places>
CORVALENCE_AVX2_STEP void twoBlocks(std::uint64_t* state, const std::uint8_t* first,
                                    const std::uint8_t* second, Pair* pairs,
                                    std::index_sequence<Places...>) noexcept {
    const std::uint64_t* constants = kSha512Constants.data();
    __m256i x[8];
    (load<Places>(x, first, second), ...);
    (keep(pairs[Places], x[Places], constants + 2 * Places), ...);
    Sha2State<Sha512> s(state);
    std::size_t done = 0;
    for (; done < kPairs - 8; done += 8) {
        (roundsAndRenewal<Places>(s, x, pairs + done, constants + 2 * done), ...);
    }
    (rounds<Places>(s, pairs[done].first), ...);
    s.addTo(state);
}

template <std::size_t... Places>
CORVALENCE_AVX2_STEP void preparedBlock(std::uint64_t* state, const Pair* pairs,
                                        std::index_sequence<Places...>) noexcept {
    Sha2State<Sha512> s(state);
    for (std::size_t done = 0; done < kPairs; done += 8)
        (rounds<Places>(s, pairs[done].second), ...);
    s.addTo(state);
}

}  // namespace

CORVALENCE_AVX2 void compressSha512Avx2(std::uint64_t* state, const std::uint8_t* blocks,
                                        std::size_t count) noexcept {
    constexpr auto kEight = std::make_index_sequence<8>();
    Pair pairs[kPairs];
    for (; count > 1; count -= 2, blocks += 2 * kBlockSize) {
        twoBlocks(state, blocks, blocks + kBlockSize, pairs, kEight);
        preparedBlock(state, pairs, kEight);
    }
    if (count == 1) twoBlocks(state, blocks, blocks, pairs, kEight);
}

#undef CORVALENCE_AVX2_STEP
#undef CORVALENCE_AVX2

}  // namespace corvalence::crypto

#endif
