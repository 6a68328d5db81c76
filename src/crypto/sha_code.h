#pragma once

#include <cstddef>
#include <cstdint>

namespace corvalence::crypto {

/// Folds `count` whole blocks, one behind the other, into the chaining words. The blocks may stand at any
/// address.
using Compress32 = void (*)(std::uint32_t* state, const std::uint8_t* blocks, std::size_t count) noexcept;
using Compress64 = void (*)(std::uint64_t* state, const std::uint8_t* blocks, std::size_t count) noexcept;

/// One set of compression functions; null where this build or this processor has none.
struct ShaCode {
    Compress32 sha1 = nullptr;    // 5 words, blocks of 64 bytes
    Compress32 sha256 = nullptr;  // 8 words, blocks of 64 bytes
    Compress64 sha512 = nullptr;  // 8 words, blocks of 128 bytes
};

ShaCode portableShaCode() noexcept;
ShaCode acceleratedShaCode() noexcept;

}  // namespace corvalence::crypto
