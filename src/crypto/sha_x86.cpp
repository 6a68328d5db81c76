#include "crypto/cpu_features.h"
#include "crypto/sha_code.h"
#include "crypto/sha_tables.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <utility>

#include "crypto/sha512_x86.h"

namespace corvalence::crypto {
namespace {

#define CORVALENCE_SHA_STEP [[gnu::target("sha,sse4.1"), gnu::always_inline]] inline

CORVALENCE_SHA_STEP __m128i load(const void* from) noexcept {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

CORVALENCE_SHA_STEP void store(void* to, __m128i value) noexcept {
    _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

// Four rounds of SHA-1. `abcd` and `e` are the state; `e` is handed on as the state before these rounds, from
// which the next ones take their fifth word. The words of the block turn over in m[0..3], four at a time.
template <int Group>
CORVALENCE_SHA_STEP void sha1Rounds(__m128i& abcd, __m128i& e, __m128i* m) noexcept {
    __m128i& now = m[Group % 4];
    const __m128i sum = Group == 0 ? _mm_add_epi32(e, now) : _mm_sha1nexte_epu32(e, now);
    e = abcd;
    abcd = _mm_sha1rnds4_epu32(abcd, sum, Group / 5);
    if constexpr (Group < 16) {
        const __m128i mixed = _mm_xor_si128(_mm_sha1msg1_epu32(now, m[(Group + 1) % 4]), m[(Group + 2) % 4]);
        now = _mm_sha1msg2_epu32(mixed, m[(Group + 3) % 4]);
    }
}

template <int... Groups>
CORVALENCE_SHA_STEP void sha1Block(__m128i& abcd, __m128i& e, __m128i* m,
                                   std::integer_sequence<int, Groups...>) noexcept {
    (sha1Rounds<Groups>(abcd, e, m), ...);
}

[[gnu::target("sha,sse4.1")]] void compressSha1(std::uint32_t* state, const std::uint8_t* blocks,
                                                std::size_t count) noexcept {
    const __m128i bigEndian = _mm_set_epi64x(0x0001020304050607, 0x08090A0B0C0D0E0F);
    __m128i abcd = _mm_shuffle_epi32(load(state), 0x1B);
    __m128i e = _mm_set_epi32(static_cast<int>(state[4]), 0, 0, 0);
    for (; count > 0; --count, blocks += 64) {
        const __m128i abcdBefore = abcd;
        const __m128i eBefore = e;
        __m128i m[4];
        for (int i = 0; i < 4; ++i)
            m[i] = _mm_shuffle_epi8(load(blocks + 16 * i), bigEndian);
        sha1Block(abcd, e, m, std::make_integer_sequence<int, 20>());
        e = _mm_sha1nexte_epu32(e, eBefore);
        abcd = _mm_add_epi32(abcd, abcdBefore);
    }
    store(state, _mm_shuffle_epi32(abcd, 0x1B));
    state[4] = static_cast<std::uint32_t>(_mm_extract_epi32(e, 3));
}

// Four rounds of SHA-256, two by each instruction; abef and cdgh change places after each.
template <int Group>
CORVALENCE_SHA_STEP void sha256Rounds(__m128i& abef, __m128i& cdgh, __m128i* m) noexcept {
    __m128i& now = m[Group % 4];
    const __m128i sum = _mm_add_epi32(now, load(&kSha256Constants[4 * Group]));
    cdgh = _mm_sha256rnds2_epu32(cdgh, abef, sum);
    abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(sum, 0x0E));
    if constexpr (Group < 12) {
        const __m128i& last = m[(Group + 3) % 4];
        const __m128i mixed = _mm_add_epi32(_mm_sha256msg1_epu32(now, m[(Group + 1) % 4]),
                                            _mm_alignr_epi8(last, m[(Group + 2) % 4], 4));
        now = _mm_sha256msg2_epu32(mixed, last);
    }
}

template <int... Groups>
CORVALENCE_SHA_STEP void sha256Block(__m128i& abef, __m128i& cdgh, __m128i* m,
                                     std::integer_sequence<int, Groups...>) noexcept {
    (sha256Rounds<Groups>(abef, cdgh, m), ...);
}

[[gnu::target("sha,sse4.1")]] void compressSha256(std::uint32_t* state, const std::uint8_t* blocks,
                                                  std::size_t count) noexcept {
    const __m128i bigEndian = _mm_set_epi64x(0x0C0D0E0F08090A0B, 0x0405060700010203);
    const __m128i badc = _mm_shuffle_epi32(load(state), 0xB1);
    const __m128i hgfe = _mm_shuffle_epi32(load(state + 4), 0x1B);
    __m128i abef = _mm_alignr_epi8(badc, hgfe, 8);
    __m128i cdgh = _mm_blend_epi16(hgfe, badc, 0xF0);
    for (; count > 0; --count, blocks += 64) {
        const __m128i abefBefore = abef;
        const __m128i cdghBefore = cdgh;
        __m128i m[4];
        for (int i = 0; i < 4; ++i)
            m[i] = _mm_shuffle_epi8(load(blocks + 16 * i), bigEndian);
        sha256Block(abef, cdgh, m, std::make_integer_sequence<int, 16>());
        abef = _mm_add_epi32(abef, abefBefore);
        cdgh = _mm_add_epi32(cdgh, cdghBefore);
    }
    const __m128i feba = _mm_shuffle_epi32(abef, 0x1B);
    const __m128i dchg = _mm_shuffle_epi32(cdgh, 0xB1);
    store(state, _mm_blend_epi16(feba, dchg, 0xF0));
    store(state + 4, _mm_alignr_epi8(dchg, feba, 8));
}

#undef CORVALENCE_SHA_STEP

}  // namespace

ShaCode acceleratedShaCode() noexcept {
    ShaCode code;
    if (cpuFeatures().sha) {
        code.sha1 = compressSha1;
        code.sha256 = compressSha256;
    }
    if (cpuFeatures().avx) code.sha512 = compressSha512Avx;
    return code;
}

}  // namespace corvalence::crypto

#else

namespace corvalence::crypto {

ShaCode acceleratedShaCode() noexcept {
    return {};
}

}  // namespace corvalence::crypto

#endif
