#pragma once

#include <cstddef>
#include <cstdint>

namespace corvalence::crypto {

/// A key schedule of rounds + 1 keys of four words in the order of use, for decryption inverse-mixed and
/// turned round.
struct AesKeys {
    const std::uint32_t* words;
    int rounds;
};

/// Many blocks in cipher block chaining; `chain` is the 16 bytes before the first and becomes those behind
/// the last. One block with a chain of zeros is the bare cipher. in and out may be the same.
using AesChained = void (*)(AesKeys keys, const std::uint8_t* in, std::uint8_t* out, std::size_t count,
                            std::uint8_t* chain) noexcept;

/// Null where this build or this processor has none.
struct AesCode {
    AesChained encrypt = nullptr;
    AesChained decrypt = nullptr;
};

AesCode portableAesCode() noexcept;
AesCode acceleratedAesCode() noexcept;

}  // namespace corvalence::crypto
