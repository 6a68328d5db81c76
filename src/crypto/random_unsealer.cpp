#include "crypto/random_unsealer.h"

#include <algorithm>
#include <cassert>

namespace corvalence::crypto {

namespace {

constexpr std::size_t kBlock = CipherContext::kBlockSize;

void readWhole(platform::File& in, base::ByteSpan bytes) {
    if (in.read(bytes) != bytes.size()) throw base::FileFailure(base::Cause::EndOfFile, 0, in.path());
}

}  // namespace

RandomUnsealer::RandomUnsealer(platform::File& in, std::uint64_t begin, std::uint64_t sealedSize,
                               const SessionKey& key, const ChainValue& chain)
    : in_(in), begin_(begin), size_(sealedSize), firstChain_(chain), chain_(chain) {
    if (sealedSize % kBlock != 0) throw base::FileFailure(base::Cause::InvalidFile, 0, in.path());
    [[maybe_unused]] const int result =
        cipher_.init(0, CipherContext::Decrypt, key.data(), CipherContext::Bits256);
    assert(result == CipherContext::kOk);
}

std::size_t RandomUnsealer::read(std::uint64_t position, base::ByteSpan plain) {
    assert(position % kBlock == 0);
    if (position >= size_) return 0;
    const auto size =
        static_cast<std::size_t>(std::min<std::uint64_t>(plain.size() / kBlock * kBlock, size_ - position));
    if (position == 0) {
        chain_ = firstChain_;
    } else if (position != next_) {
        in_.seek(begin_ + position - kBlock);
        readWhole(in_, chain_);
    }
    in_.seek(begin_ + position);
    readWhole(in_, plain.first(size));
    cipher_.decryptChained(plain.data(), plain.data(), size / kBlock, chain_);
    next_ = position + size;
    return size;
}

}  // namespace corvalence::crypto
