#pragma once

#include <array>
#include <cstdint>

#include "base/bytes.h"

namespace corvalence::crypto {

/// MD5 (RFC 1321). No allocation anywhere; may be copied.
///
/// finish() leaves the context in use: it pads, compresses and clears the 64-byte input buffer, but keeps the
/// chaining words and the byte count. An update() that follows continues from there, with the buffer position
/// that the byte count gives: the second half of a session key is made so. Every other user starts with
/// init().
class Md5 {
  public:
    static constexpr std::size_t kDigestSize = 16;
    using Digest = std::array<std::uint8_t, kDigestSize>;

    Md5() noexcept { init(); }

    void init() noexcept;
    void update(base::ByteView bytes) noexcept;
    /// The 16 digest bytes (the chaining words, little-endian).
    Digest finish() noexcept;

    /// Zeroes everything the context holds.
    void wipe() noexcept;

    /// init, update, finish.
    static Digest of(base::ByteView bytes) noexcept;

  private:
    std::array<std::uint32_t, 4> state_{};
    std::uint64_t count_ = 0;  // bytes fed so far, never reset by finish()
    std::array<std::uint8_t, 64> buffer_{};
};

}  // namespace corvalence::crypto
