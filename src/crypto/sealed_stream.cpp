#include "crypto/sealed_stream.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

#include "crypto/secure_zero.h"

namespace corvalence::crypto {

namespace {

constexpr std::size_t kBlock = CipherContext::kBlockSize;
constexpr std::size_t kBufferSize = 256 * 1024;
constexpr std::uint8_t kLineFeed = 10;
constexpr std::uint8_t kCarriageReturn = 13;

/// How many bytes of a last block the text tail rule keeps.
std::size_t textTailLength(base::ByteView block) noexcept {
    for (std::size_t i = 0; i < block.size(); ++i) {
        if (block[i] != kLineFeed) continue;
        bool lineEndFollows = false;
        for (std::size_t j = i + 1; j < block.size(); ++j) {
            lineEndFollows |= block[j] == kLineFeed && block[j - 1] == kCarriageReturn;
        }
        if (!lineEndFollows) return i + 1;
    }
    return block.size();
}

std::size_t firstOf(base::ByteView block, std::uint8_t byte) noexcept {
    return static_cast<std::size_t>(std::find(block.begin(), block.end(), byte) - block.begin());
}

}  // namespace

SealWriter::SealWriter(platform::File& out, const SessionKey& key, const ChainValue& chain, Md5* digest)
    : out_(out), digest_(digest), firstChain_(chain), chain_(chain), sealed_(kBufferSize) {
    [[maybe_unused]] const int result =
        cipher_.init(0, CipherContext::Encrypt, key.data(), CipherContext::Bits256);
    assert(result == CipherContext::kOk);
}

SealWriter::~SealWriter() {
    secureZero(remainder_.data(), remainder_.size());
    secureZero(work_.data(), work_.size());
}

void SealWriter::write(base::ByteView plain) {
    if (remainderSize_ > 0) {
        const std::size_t count = std::min(plain.size(), kBlock - remainderSize_);
        std::copy_n(plain.begin(), count, remainder_.begin() + static_cast<std::ptrdiff_t>(remainderSize_));
        remainderSize_ += count;
        plain = plain.subspan(count);
        if (remainderSize_ < kBlock) return;
        seal(remainder_.data(), 1);
        remainderSize_ = 0;
    }
    const std::size_t whole = plain.size() / kBlock;
    seal(plain.data(), whole);
    plain = plain.subspan(whole * kBlock);
    std::copy(plain.begin(), plain.end(), remainder_.begin());
    remainderSize_ = plain.size();
}

void SealWriter::seal(const std::uint8_t* plain, std::size_t blocks) {
    while (blocks > 0) {
        const std::size_t count = std::min(blocks, (kBufferSize - sealedSize_) / kBlock);
        const std::size_t size = count * kBlock;
        std::uint8_t* sealed = sealed_.data() + sealedSize_;
        const ChainValue before = chain_;
        cipher_.encryptChained(plain, sealed, count, chain_);
        const std::uint8_t* chained = count > 1 ? sealed + size - 2 * kBlock : before.data();
        for (std::size_t i = 0; i < kBlock; ++i) {
            work_[i] = static_cast<std::uint8_t>(plain[size - kBlock + i] ^ chained[i]);
        }
        sealedSize_ += size;
        if (sealedSize_ == kBufferSize) emit();
        plain += size;
        blocks -= count;
    }
}

void SealWriter::resume(const ChainValue& chain, const ChainValue& work, base::ByteView tail) {
    assert(tail.size() < kBlock);
    chain_ = chain;
    work_ = work;
    std::copy(tail.begin(), tail.end(), remainder_.begin());
    remainderSize_ = tail.size();
}

std::uint64_t SealWriter::finish() {
    if (remainderSize_ > 0) {
        for (std::size_t i = 0; i < remainderSize_; ++i) {
            work_[i] = static_cast<std::uint8_t>(remainder_[i] ^ chain_[i]);
        }
        cipher_.encryptBlock(work_.data(), sealed_.data() + sealedSize_);
        sealedSize_ += kBlock;
        remainderSize_ = 0;
    }
    emit();
    chain_ = firstChain_;
    work_ = {};
    return std::exchange(written_, 0);
}

void SealWriter::emit() {
    if (sealedSize_ == 0) return;
    const base::ByteView bytes = sealed_.bytes().first(sealedSize_);
    if (digest_ != nullptr) digest_->update(bytes);
    out_.write(bytes);
    written_ += sealedSize_;
    sealedSize_ = 0;
}

UnsealReader::UnsealReader(platform::File& in, std::uint64_t sealedSize, const SessionKey& key,
                           const ChainValue& chain, EndRule rule, Md5* digest)
    : in_(in),
      digest_(digest),
      chain_(chain),
      rule_(rule),
      size_(sealedSize),
      remaining_(sealedSize),
      buffer_(static_cast<std::size_t>(std::min<std::uint64_t>(sealedSize, kBufferSize))) {
    const bool exact = rule.kind == EndRule::Kind::ExactLength;
    if (sealedSize % kBlock != 0 ||
        (exact && (rule.length > sealedSize || sealedSize - rule.length >= kBlock))) {
        throw base::FileFailure(base::Cause::InvalidFile, 0, in.path());
    }
    [[maybe_unused]] const int result =
        cipher_.init(0, CipherContext::Decrypt, key.data(), CipherContext::Bits256);
    assert(result == CipherContext::kOk);
}

UnsealReader::~UnsealReader() {
    secureZero(buffer_.data(), buffer_.size());
}

std::size_t UnsealReader::read(base::ByteSpan plain) {
    std::size_t given = 0;
    while (given < plain.size()) {
        if (begin_ == end_) fill();
        if (begin_ == end_) break;
        const std::size_t count = std::min(plain.size() - given, end_ - begin_);
        std::memcpy(plain.data() + given, buffer_.data() + begin_, count);
        begin_ += count;
        given += count;
    }
    return given;
}

void UnsealReader::fill() {
    if (remaining_ == 0) return;
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(remaining_, buffer_.size()));
    if (in_.read(buffer_.bytes().first(size)) != size) {
        throw base::FileFailure(base::Cause::EndOfFile, 0, in_.path());
    }
    if (digest_ != nullptr) digest_->update(buffer_.bytes().first(size));
    const ChainValue before = chain_;
    cipher_.decryptChained(buffer_.data(), buffer_.data(), size / kBlock, chain_);
    remaining_ -= size;
    begin_ = 0;
    end_ = size;
    if (remaining_ > 0) return;

    const base::ByteView last = buffer_.bytes().subspan(size - kBlock, kBlock);
    std::size_t kept = kBlock;
    switch (rule_.kind) {
        case EndRule::Kind::TextTail:
            kept = textTailLength(last);
            break;
        case EndRule::Kind::ShortTail:
            kept = firstOf(last, kLineFeed);
            if (size_ == kBlock) {
                // This search looks at the block as it was deciphered, before its chain value came in.
                ChainValue deciphered{};
                for (std::size_t i = 0; i < kBlock; ++i) {
                    deciphered[i] = static_cast<std::uint8_t>(last[i] ^ before[i]);
                }
                kept = std::min(kept, firstOf(deciphered, 0));
            }
            break;
        case EndRule::Kind::ExactLength:
            kept = static_cast<std::size_t>(rule_.length - (size_ - kBlock));
            break;
    }
    end_ = size - kBlock + kept;
}

}  // namespace corvalence::crypto
