#pragma once

#include <cstdint>

#include "crypto/session.h"
#include "platform/file_system.h"

namespace corvalence::crypto {

/// Unseals a stretch of an open file at any place in it: a block of a chained stretch is deciphered with
/// nothing but the sealed block in front of it (NIST SP 800-38A, 6.2).
class RandomUnsealer {
  public:
    /// The stretch is the `sealedSize` bytes of `in` from `begin` on. InvalidFile where that is no multiple
    /// of 16.
    RandomUnsealer(platform::File& in, std::uint64_t begin, std::uint64_t sealedSize, const SessionKey& key,
                   const ChainValue& chain);

    /// Deciphers from `position` of the stretch, a multiple of 16, as many whole blocks as `plain` takes. The
    /// number of bytes; 0 at the end. What the last block holds behind the end of the plain text comes along.
    /// EndOfFile where `in` is shorter than it said.
    std::size_t read(std::uint64_t position, base::ByteSpan plain);

  private:
    platform::File& in_;
    CipherContext cipher_;
    std::uint64_t begin_;
    std::uint64_t size_;
    ChainValue firstChain_;
    // Of the block behind the one that was read last: reading on needs no look back.
    ChainValue chain_;
    std::uint64_t next_ = 0;
};

}  // namespace corvalence::crypto
