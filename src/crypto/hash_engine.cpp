#include "crypto/hash_engine.h"

#include <algorithm>

#include "base/hex_text.h"
#include "crypto/byte_order.h"
#include "crypto/sha_tables.h"

namespace corvalence::crypto {
namespace {

constexpr std::array<std::size_t, 6> kDigestSizes = {0, 20, 28, 32, 48, 64};

void requireType(int type) {
    if (type < HashEngine::SHA1 || type > HashEngine::SHA512)
        throw std::runtime_error("Invalid SHA_TYPE type!");
}

/// The accelerated functions, and portable ones where there are none.
ShaCode compressorsOf(HashEngine::Code code) noexcept {
    ShaCode chosen = portableShaCode();
    if (code == HashEngine::Code::Portable) return chosen;
    const ShaCode fast = acceleratedShaCode();
    if (fast.sha1 != nullptr) chosen.sha1 = fast.sha1;
    if (fast.sha256 != nullptr) chosen.sha256 = fast.sha256;
    if (fast.sha512 != nullptr) chosen.sha512 = fast.sha512;
    return chosen;
}

/// The leading digest.size() bytes of the words, high byte first.
template <typename Word, std::size_t Size>
void storeDigest(const std::array<Word, Size>& state, base::ByteSpan digest) noexcept {
    std::array<std::uint8_t, Size * sizeof(Word)> bytes;
    for (std::size_t i = 0; i < Size; ++i)
        storeWord<std::endian::big>(state[i], bytes.data() + sizeof(Word) * i);
    std::copy_n(bytes.begin(), digest.size(), digest.begin());
}

}  // namespace

bool HashEngine::isAcceleratedAvailable(int type) noexcept {
    const ShaCode code = acceleratedShaCode();
    if (type == SHA1) return code.sha1 != nullptr;
    return type >= SHA384 ? code.sha512 != nullptr : code.sha256 != nullptr;
}

HashEngine::HashEngine(Code code) noexcept : compressors_(compressorsOf(code)) {}

void HashEngine::Init(int type) {
    type_ = 0;
    finished_ = false;
    requireType(type);
    switch (type) {
        case SHA1:
            std::copy(kSha1Initial.begin(), kSha1Initial.end(), narrowState_.begin());
            break;
        case SHA224:
            narrowState_ = kSha224Initial;
            break;
        case SHA256:
            narrowState_ = kSha256Initial;
            break;
        case SHA384:
            wideState_ = kSha384Initial;
            break;
        default:
            wideState_ = kSha512Initial;
            break;
    }
    countLow_ = 0;
    countHigh_ = 0;
    type_ = type;
}

void HashEngine::Update(base::ByteView bytes) {
    requireType(type_);
    const std::size_t blockSize = this->blockSize();
    const std::size_t position = countLow_ % blockSize;
    countLow_ += bytes.size();
    if (countLow_ < bytes.size()) ++countHigh_;
    if (position != 0) {
        const std::size_t taken = std::min(blockSize - position, bytes.size());
        std::copy_n(bytes.begin(), taken, buffer_.begin() + static_cast<std::ptrdiff_t>(position));
        if (position + taken < blockSize) return;
        compress(buffer_.data(), 1);
        bytes = bytes.subspan(taken);
    }
    compress(bytes.data(), bytes.size() / blockSize);
    bytes = bytes.last(bytes.size() % blockSize);
    std::copy(bytes.begin(), bytes.end(), buffer_.begin());
}

void HashEngine::Final() {
    requireType(type_);
    pad();
    rawSize_ = kDigestSizes[static_cast<std::size_t>(type_)];
    const base::ByteSpan digest = base::ByteSpan(raw_).first(rawSize_);
    if (isWide()) {
        storeDigest(wideState_, digest);
    } else {
        storeDigest(narrowState_, digest);
    }
    text_ = base::hexText(digest);
    type_ = 0;
    finished_ = true;
}

const std::string& HashEngine::Hash(int type, base::ByteView bytes) {
    Init(type);
    Update(bytes);
    Final();
    return text_;
}

const std::string& HashEngine::hexText() const {
    requireFinished();
    return text_;
}

const char* HashEngine::hexCString() const {
    return hexText().c_str();
}

base::ByteView HashEngine::rawDigest() const {
    requireFinished();
    return base::ByteView(raw_).first(rawSize_);
}

void HashEngine::compress(const std::uint8_t* blocks, std::size_t count) noexcept {
    if (isWide()) {
        compressors_.sha512(wideState_.data(), blocks, count);
    } else if (type_ == SHA1) {
        compressors_.sha1(narrowState_.data(), blocks, count);
    } else {
        compressors_.sha256(narrowState_.data(), blocks, count);
    }
}

/// A one bit, zeros, and the length in bits at the end of a block: 16 bytes of it in the wide family, 8 in
/// the other.
void HashEngine::pad() noexcept {
    const std::size_t blockSize = this->blockSize();
    const std::size_t lengthSize = blockSize / 8;
    const auto blockEnd = buffer_.begin() + static_cast<std::ptrdiff_t>(blockSize);
    auto position = buffer_.begin() + static_cast<std::ptrdiff_t>(countLow_ % blockSize);
    *position++ = 0x80;
    std::fill(position, blockEnd, std::uint8_t{0});
    if (static_cast<std::size_t>(blockEnd - position) < lengthSize) {
        compress(buffer_.data(), 1);
        std::fill(buffer_.begin(), blockEnd, std::uint8_t{0});
    }
    std::uint8_t* const length = buffer_.data() + blockSize;
    storeWord<std::endian::big>(countLow_ << 3, length - 8);
    if (isWide()) storeWord<std::endian::big>((countHigh_ << 3) | (countLow_ >> 61), length - 16);
    compress(buffer_.data(), 1);
}

void HashEngine::requireFinished() const {
    if (!finished_) throw std::runtime_error("Unfinished execution!");
}

}  // namespace corvalence::crypto
