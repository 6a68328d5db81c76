#pragma once

#include <cstdint>

#include "base/page_buffer.h"
#include "crypto/md5.h"
#include "crypto/session.h"
#include "platform/file_system.h"

namespace corvalence::crypto {

// The sealed format: a bare run of 16-byte blocks of AES-256 (FIPS 197), chained as in NIST SP 800-38A, 6.2,
// with no header, length or padding. The last block of a plain text whose length is no multiple of 16 is
// filled up with what the block before it left behind; where the plain text ends is inferred when it is
// unsealed.

/// How unsealing finds the end of the plain text in the last block.
struct EndRule {
    enum class Kind {
        /// Rule A: up to the last line feed after which no CR LF follows in the block; the whole block where
        /// it
        /// holds no line feed.
        TextTail,
        /// Rule B: up to the first line feed, that line feed left out. A file of a single block also ends at
        /// the
        /// first zero byte of its deciphered, still chained block.
        ShortTail,
        /// Rule C: exactly `length` bytes.
        ExactLength,
    };

    Kind kind = Kind::TextTail;
    std::uint64_t length = 0;

    static constexpr EndRule textTail() noexcept { return {Kind::TextTail, 0}; }
    static constexpr EndRule shortTail() noexcept { return {Kind::ShortTail, 0}; }
    static constexpr EndRule exactLength(std::uint64_t length) noexcept {
        return {Kind::ExactLength, length};
    }
};

/// Seals what is written to it into an open file, from that file's position. Failures are those of the file.
class SealWriter {
  public:
    /// `digest`, where given, is fed every sealed byte, so that a database need not be read again for its
    /// digest.
    SealWriter(platform::File& out, const SessionKey& key, const ChainValue& chain, Md5* digest = nullptr);
    ~SealWriter();
    SealWriter(const SealWriter&) = delete;
    SealWriter& operator=(const SealWriter&) = delete;

    void write(base::ByteView plain);
    /// Hands the whole blocks that are sealed so far to the file.
    void push() { emit(); }
    /// Goes on with a sealing that ended earlier, before anything is written: behind the sealed block
    /// `chain`, with the plain bytes `tail` of a block that was short. `work` is that sealed block
    /// deciphered, zeros where `chain` is the first chain value.
    void resume(const ChainValue& chain, const ChainValue& work, base::ByteView tail);
    /// Seals a short last block, if there is one, and hands everything to the file. The number of sealed
    /// bytes: the plain length rounded up to 16. The next write() begins another sealing of its own, behind
    /// this one.
    std::uint64_t finish();

  private:
    void seal(const std::uint8_t* plain, std::size_t blocks);
    void emit();

    platform::File& out_;
    Md5* digest_;
    CipherContext cipher_;
    ChainValue firstChain_;
    ChainValue chain_;
    ChainValue work_{};       // the last block, XORed with its chain value: fills up a short one behind it
    ChainValue remainder_{};  // plain bytes that do not fill a block yet
    std::size_t remainderSize_ = 0;
    base::PageBuffer sealed_;
    std::size_t sealedSize_ = 0;
    std::uint64_t written_ = 0;
};

/// Unseals a stretch of an open file, from that file's position.
class UnsealReader {
  public:
    /// `sealedSize` bytes are taken from `in`. InvalidFile where that is no multiple of 16, or where an exact
    /// length does not lie in the last block. `digest`, where given, is fed every sealed byte that is read.
    UnsealReader(platform::File& in, std::uint64_t sealedSize, const SessionKey& key, const ChainValue& chain,
                 EndRule rule, Md5* digest = nullptr);
    ~UnsealReader();
    UnsealReader(const UnsealReader&) = delete;
    UnsealReader& operator=(const UnsealReader&) = delete;

    /// The next plain bytes, as many as fit; 0 at the end. EndOfFile where `in` is shorter than it said.
    std::size_t read(base::ByteSpan plain);

  private:
    void fill();

    platform::File& in_;
    Md5* digest_;
    CipherContext cipher_;
    ChainValue chain_;
    EndRule rule_;
    std::uint64_t size_;
    std::uint64_t remaining_;
    base::PageBuffer buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

}  // namespace corvalence::crypto
