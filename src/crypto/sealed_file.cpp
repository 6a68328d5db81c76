#include "crypto/sealed_file.h"

#include <algorithm>

#include "base/page_buffer.h"

#include "crypto/secure_zero.h"
#include "platform/file_copy.h"

namespace corvalence::crypto {

namespace {

constexpr std::size_t kBlock = CipherContext::kBlockSize;
// Stands in sealed strings for a zero byte.
constexpr std::uint8_t kStandIn = 127;

std::unique_ptr<platform::File> openSource(platform::FileSystem& files, const std::string& source,
                                           const UnsealVariant& variant) {
    if (!files.status(source, platform::Follow::Yes))
        throw RequiredFileMissing(source, variant.referenceCode);
    return files.openShared(source);
}

/// Plain bytes, zeroed whichever way they go.
struct PlainBlock {
    base::PageBuffer buffer;
    ~PlainBlock() { secureZero(buffer.data(), buffer.size()); }
};

/// Unseals the whole file, handing the plain text on in blocks.
template <typename Sink>
void unsealInto(platform::FileSystem& files, const std::string& source, const SessionKey& key,
                const ChainValue& chain, const UnsealVariant& variant, Md5* digest, Sink&& sink) {
    const auto file = openSource(files, source, variant);
    const std::uint64_t size = file->size();
    UnsealReader reader(*file, size, key, chain, variant.rule, digest);
    PlainBlock block{
        base::PageBuffer(static_cast<std::size_t>(std::min<std::uint64_t>(size, platform::kBlockSize)))};
    while (const std::size_t count = reader.read(block.buffer.bytes()))
        sink(block.buffer.bytes().first(count));
}

}  // namespace

RequiredFileMissing::RequiredFileMissing(const std::string& path, std::string_view referenceCode)
    : base::FileFailure(base::Cause::FileNotFound, path,
                        "A required file does not exist!\n\nCorvalence support reference code: " +
                            std::string(referenceCode)) {}

void unsealFile(platform::FileSystem& files, const std::string& source, platform::File& destination,
                const SessionKey& key, const ChainValue& chain, const UnsealVariant& variant, Md5* digest) {
    destination.seek(0);
    unsealInto(files, source, key, chain, variant, digest,
               [&](base::ByteView plain) { destination.write(plain); });
}

SecretText unsealText(platform::FileSystem& files, const std::string& source, const SessionKey& key,
                      const ChainValue& chain, const UnsealVariant& variant, Md5* digest,
                      const std::function<void()>& atBlock) {
    SecretText text;
    if (const auto status = files.status(source, platform::Follow::Yes))
        text.reserve(static_cast<std::size_t>(status->size));
    unsealInto(files, source, key, chain, variant, digest, [&](base::ByteView plain) {
        text.append(base::textOf(plain));
        if (atBlock) atBlock();
    });
    return text;
}

void sealFile(WorkingFiles& working, std::string_view text, const std::string& destination,
              const SessionKey& key, const ChainValue& chain) {
    TemporaryFile beside = working.createSealed(destination, kSealedBesideSuffix);
    SealWriter writer(beside.file(), key, chain);
    writer.write(base::bytesOf(text));
    writer.finish();
    beside.keepAs(destination);
}

std::string sealString(std::string_view text, const SessionKey& key, const ChainValue& chain) {
    CipherContext cipher;
    cipher.init(0, CipherContext::Encrypt, key.data(), CipherContext::Bits256);
    ChainValue chained = chain;
    ChainValue work{};
    std::string sealed;
    for (std::size_t block = 0; block * kBlock < text.size(); ++block) {
        const std::string_view piece = text.substr(block * kBlock, kBlock);
        for (std::size_t i = 0; i < piece.size(); ++i) {
            work[i] = static_cast<std::uint8_t>(static_cast<std::uint8_t>(piece[i]) ^ chained[i]);
        }
        ChainValue out{};
        cipher.encryptBlock(work.data(), out.data());
        std::copy_n(out.begin(), piece.size(), chained.begin());
        std::replace(out.begin(), out.end(), std::uint8_t{0}, kStandIn);
        sealed.append(base::textOf(out));
    }
    secureZero(work.data(), work.size());
    return sealed;
}

std::string unsealString(std::string_view sealed, const SessionKey& key, const ChainValue& chain) {
    CipherContext cipher;
    cipher.init(0, CipherContext::Decrypt, key.data(), CipherContext::Bits256);
    ChainValue chained = chain;
    std::string text;
    for (std::size_t block = 0; block < sealed.size() / kBlock; ++block) {
        ChainValue in{};
        std::copy_n(sealed.begin() + static_cast<std::ptrdiff_t>(block * kBlock), kBlock, in.begin());
        std::replace(in.begin(), in.end(), kStandIn, std::uint8_t{0});
        ChainValue plain{};
        cipher.decryptBlock(in.data(), plain.data());
        for (std::size_t i = 0; i < kBlock; ++i) {
            const auto byte = static_cast<std::uint8_t>(plain[i] ^ chained[i]);
            if (byte < 32 || byte > 126) break;
            text.push_back(static_cast<char>(byte));
        }
        chained = in;
    }
    return text;
}

}  // namespace corvalence::crypto
