#include "crypto/aes_code.h"
#include "crypto/cpu_features.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <utility>

namespace corvalence::crypto {
namespace {

// Decryption of one block does not wait for another, and the instructions take several cycles each: this many
// are under way at a time.
constexpr std::size_t kLanes = 8;

#define CORVALENCE_AES [[gnu::target("aes,sse2")]]

CORVALENCE_AES inline __m128i load(const void* from) noexcept {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

CORVALENCE_AES inline void store(void* to, __m128i value) noexcept {
    _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

CORVALENCE_AES void encrypt(AesKeys keys, const std::uint8_t* in, std::uint8_t* out, std::size_t count,
                            std::uint8_t* chain) noexcept {
    __m128i block = load(chain);
    for (; count > 0; --count, in += 16, out += 16) {
        const std::uint32_t* key = keys.words;
        block = _mm_xor_si128(block, _mm_xor_si128(load(in), load(key)));
        for (int round = 1; round < keys.rounds; ++round)
            block = _mm_aesenc_si128(block, load(key += 4));
        block = _mm_aesenclast_si128(block, load(key + 4));
        store(out, block);
    }
    store(chain, block);
}

// Decrypts the blocks `Lanes` side by side and returns the last one's ciphertext, the next chain value. Every
// lane is named by its number, so that all of them stay in registers.
template <std::size_t... Lanes>
CORVALENCE_AES inline __m128i decryptLanes(AesKeys keys, const std::uint8_t* in, std::uint8_t* out,
                                           __m128i previous, std::index_sequence<Lanes...>) noexcept {
    const std::uint32_t* key = keys.words;
    const __m128i first = load(key);
    __m128i block[] = {_mm_xor_si128(load(in + 16 * Lanes), first)...};
    for (int round = 1; round < keys.rounds; ++round) {
        const __m128i middle = load(key += 4);
        ((block[Lanes] = _mm_aesdec_si128(block[Lanes], middle)), ...);
    }
    // The ciphertext is read again rather than kept; out may be in, so all of it before anything is written.
    const __m128i last = load(key + 4);
    const __m128i chain[] = {previous, load(in + 16 * Lanes)...};
    ((block[Lanes] = _mm_xor_si128(_mm_aesdeclast_si128(block[Lanes], last), chain[Lanes])), ...);
    (store(out + 16 * Lanes, block[Lanes]), ...);
    return chain[sizeof...(Lanes)];
}

CORVALENCE_AES void decrypt(AesKeys keys, const std::uint8_t* in, std::uint8_t* out, std::size_t count,
                            std::uint8_t* chain) noexcept {
    __m128i previous = load(chain);
    for (; count >= kLanes; count -= kLanes, in += 16 * kLanes, out += 16 * kLanes) {
        previous = decryptLanes(keys, in, out, previous, std::make_index_sequence<kLanes>());
    }
    for (; count > 0; --count, in += 16, out += 16)
        previous = decryptLanes(keys, in, out, previous, std::make_index_sequence<1>());
    store(chain, previous);
}

#undef CORVALENCE_AES

}  // namespace

AesCode acceleratedAesCode() noexcept {
    if (!cpuFeatures().aes) return {};
    return {encrypt, decrypt};
}

}  // namespace corvalence::crypto

#else

namespace corvalence::crypto {

AesCode acceleratedAesCode() noexcept {
    return {};
}

}  // namespace corvalence::crypto

#endif
