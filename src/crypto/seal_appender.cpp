#include "crypto/seal_appender.h"

#include "crypto/secure_zero.h"

namespace corvalence::crypto {

namespace {

constexpr std::size_t kBlock = CipherContext::kBlockSize;

ChainValue blockAt(platform::File& file, std::uint64_t position) {
    ChainValue block{};
    file.seek(position);
    if (file.read(block) != kBlock) throw base::FileFailure(base::Cause::EndOfFile, 0, file.path());
    return block;
}

ChainValue deciphered(const ChainValue& sealed, const SessionKey& key) {
    CipherContext cipher;
    cipher.init(0, CipherContext::Decrypt, key.data(), CipherContext::Bits256);
    ChainValue plain{};
    cipher.decryptBlock(sealed.data(), plain.data());
    return plain;
}

}  // namespace

SealAppender::SealAppender(platform::File& file, const SessionKey& key, const ChainValue& chain)
    : file_(file), writer_(file, key, chain) {
    const std::uint64_t size = file.size() / kBlock * kBlock;
    if (size != file.size()) file.resize(size);
    if (size == 0) {
        file.seek(0);
        return;
    }
    const ChainValue before = size > kBlock ? blockAt(file, size - 2 * kBlock) : chain;
    file.seek(size - kBlock);
    ChainValue last{};
    const std::size_t kept = UnsealReader(file, kBlock, key, before, EndRule::textTail()).read(last);
    isAtLineBegin_ = last[kept - 1] == '\n';
    if (kept == kBlock) {
        const ChainValue sealed = blockAt(file, size - kBlock);
        writer_.resume(sealed, deciphered(sealed, key), {});
    } else {
        const ChainValue work = size > kBlock ? deciphered(before, key) : ChainValue{};
        writer_.resume(before, work, base::ByteView(last).first(kept));
        file.seek(size - kBlock);
    }
    secureZero(last.data(), last.size());
}

void SealAppender::finish() {
    writer_.finish();
    file_.flush();
}

}  // namespace corvalence::crypto
