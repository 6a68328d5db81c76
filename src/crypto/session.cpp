#include "crypto/session.h"

#include <algorithm>

#include "base/hex_text.h"
#include "crypto/md5.h"
#include "crypto/secure_zero.h"

namespace corvalence::crypto {

namespace {

constexpr std::size_t kHalf = CipherContext::kBlockSize / 2;

ChainValue twice(base::ByteView eight) noexcept {
    ChainValue value{};
    std::copy_n(eight.begin(), kHalf, value.begin());
    std::copy_n(eight.begin(), kHalf, value.begin() + kHalf);
    return value;
}

ChainValue rawChain(std::string_view text) noexcept {
    return twice(Md5::of(base::bytesOf(text)));
}

ChainValue hexChain(std::string_view text) noexcept {
    return twice(base::bytesOf(base::hexText(Md5::of(base::bytesOf(text)))));
}

}  // namespace

SessionKey::SessionKey(std::string_view password) noexcept {
    Md5 context;
    context.update(base::bytesOf(password));
    Md5::Digest first = context.finish();
    // No init here: the second half continues on the context as the first finish left it.
    context.update(first);
    Md5::Digest second = context.finish();
    std::copy(first.begin(), first.end(), bytes_.begin());
    std::copy(second.begin(), second.end(), bytes_.begin() + first.size());
    context.wipe();
    secureZero(first.data(), first.size());
    secureZero(second.data(), second.size());
}

SessionKey::~SessionKey() {
    secureZero(bytes_.data(), bytes_.size());
}

bool SessionKey::equals(const SessionKey& other) const noexcept {
    std::uint8_t difference = 0;
    for (std::size_t i = 0; i < kSize; ++i)
        difference = static_cast<std::uint8_t>(difference | (bytes_[i] ^ other.bytes_[i]));
    return difference == 0;
}

ChainValue PathIV(std::string_view path) noexcept {
    return hexChain(path);
}

ChainValue BackupIV(std::string_view backupIndexPath) noexcept {
    return rawChain(backupIndexPath);
}

ChainValues::ChainValues() noexcept
    : IndexIV(rawChain("Database Index")),
      ScheduleIV(rawChain("Scheduled Checking")),
      LogIV(rawChain("Log File")),
      RecentIV(hexChain("Most Recently")) {}

}  // namespace corvalence::crypto
