#include "crypto/sealed_stream.h"

#include <algorithm>
#include <cassert>
#include <cstring>

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
    : out_(out), digest_(digest), chain_(chain), plain_(kBufferSize), sealed_(kBufferSize) {
    [[maybe_unused]] const int result =
        cipher_.init(0, CipherContext::Encrypt, key.data(), CipherContext::Bits256);
    assert(result == CipherContext::kOk);
}

SealWriter::~SealWriter() {
    secureZero(plain_.data(), plain_.size());
    secureZero(work_.data(), work_.size());
}

void SealWriter::write(base::ByteView plain) {
    while (!plain.empty()) {
        const std::size_t count = std::min(plain.size(), plain_.size() - filled_);
        std::memcpy(plain_.data() + filled_, plain.data(), count);
        filled_ += count;
        plain = plain.subspan(count);
        if (filled_ == plain_.size()) sealWholeBlocks();
    }
}

void SealWriter::sealWholeBlocks() {
    const std::size_t blocks = filled_ / kBlock;
    if (blocks == 0) return;
    const std::size_t size = blocks * kBlock;
    const ChainValue before = chain_;
    cipher_.encryptChained(plain_.data(), sealed_.data(), blocks, chain_);
    const std::uint8_t* chained = blocks > 1 ? sealed_.data() + size - 2 * kBlock : before.data();
    for (std::size_t i = 0; i < kBlock; ++i) {
        work_[i] = static_cast<std::uint8_t>(plain_[size - kBlock + i] ^ chained[i]);
    }
    emit(base::ByteView(sealed_).first(size));
    std::memmove(plain_.data(), plain_.data() + size, filled_ - size);
    filled_ -= size;
}

std::uint64_t SealWriter::finish() {
    sealWholeBlocks();
    if (filled_ > 0) {
        for (std::size_t i = 0; i < filled_; ++i) {
            work_[i] = static_cast<std::uint8_t>(plain_[i] ^ chain_[i]);
        }
        ChainValue last{};
        cipher_.encryptBlock(work_.data(), last.data());
        emit(last);
        filled_ = 0;
    }
    return written_;
}

void SealWriter::emit(base::ByteView sealed) {
    if (digest_ != nullptr) digest_->update(sealed);
    out_.write(sealed);
    written_ += sealed.size();
}

UnsealReader::UnsealReader(platform::File& in, std::uint64_t sealedSize, const SessionKey& key,
                           const ChainValue& chain, EndRule rule, Md5* digest)
    : in_(in), digest_(digest), chain_(chain), rule_(rule), size_(sealedSize), remaining_(sealedSize) {
    const bool exact = rule.kind == EndRule::Kind::ExactLength;
    if (sealedSize % kBlock != 0 ||
        (exact && (rule.length > sealedSize || sealedSize - rule.length >= kBlock))) {
        throw base::FileFailure(base::Cause::InvalidFile, 0, in.path());
    }
    buffer_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(sealedSize, kBufferSize)));
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
    if (in_.read(base::ByteSpan(buffer_).first(size)) != size) {
        throw base::FileFailure(base::Cause::EndOfFile, 0, in_.path());
    }
    if (digest_ != nullptr) digest_->update(base::ByteView(buffer_).first(size));
    const ChainValue before = chain_;
    cipher_.decryptChained(buffer_.data(), buffer_.data(), size / kBlock, chain_);
    remaining_ -= size;
    begin_ = 0;
    end_ = size;
    if (remaining_ > 0) return;

    const base::ByteView last = base::ByteView(buffer_).subspan(size - kBlock, kBlock);
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
