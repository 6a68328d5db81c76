#include "crypto/cipher.h"

#include <algorithm>

#include "crypto/aes_tables.h"
#include "crypto/byte_order.h"
#include "crypto/secure_zero.h"

namespace corvalence::crypto {
namespace {

std::uint32_t substitute(std::uint32_t word) noexcept {
    std::uint32_t result = 0;
    for (int shift = 0; shift < 32; shift += 8)
        result |= std::uint32_t{kAesBox[(word >> shift) & 0xFF]} << shift;
    return result;
}

/// FIPS 197, 5.2, with the words' first byte in the low bits. The schedule's first words hold the key.
void expandKey(std::uint32_t* schedule, std::size_t keyWords, std::size_t allWords) noexcept {
    std::uint8_t roundConstant = 1;
    for (std::size_t i = keyWords; i < allWords; ++i) {
        std::uint32_t word = schedule[i - 1];
        if (i % keyWords == 0) {
            word = substitute(std::rotr(word, 8)) ^ roundConstant;
            roundConstant = aesProduct(roundConstant, 2);
        } else if (keyWords > 6 && i % keyWords == 4) {
            word = substitute(word);
        }
        schedule[i] = schedule[i - keyWords] ^ word;
    }
}

std::uint32_t inverseMix(std::uint32_t word) noexcept {
    std::uint32_t mixed = 0;
    // The decryption tables undo the substitution before they mix, so the box in front leaves the mix alone.
    for (std::size_t row = 0; row < 4; ++row)
        mixed ^= kAesDecryption[row][kAesBox[(word >> (8 * row)) & 0xFF]];
    return mixed;
}

/// The equivalent inverse cipher's schedule (FIPS 197, 5.3.5), in the order in which decryption uses it.
void turnForDecryption(std::uint32_t* schedule, std::size_t allWords) noexcept {
    for (std::size_t low = 0, high = allWords - 4; low < high; low += 4, high -= 4) {
        std::swap_ranges(schedule + low, schedule + low + 4, schedule + high);
    }
    for (std::size_t i = 4; i < allWords - 4; ++i)
        schedule[i] = inverseMix(schedule[i]);
}

}  // namespace

bool CipherContext::isAcceleratedAvailable() noexcept {
    return acceleratedAesCode().encrypt != nullptr;
}

CipherContext::CipherContext(Code code) noexcept : code_(portableAesCode()) {
    if (code != Code::Portable && isAcceleratedAvailable()) code_ = acceleratedAesCode();
}

CipherContext::~CipherContext() {
    secureZero(schedule_.data(), sizeof schedule_);
}

int CipherContext::init(int mode, int direction, const std::uint8_t* key, int keyLength) noexcept {
    state_ = 1;
    secureZero(schedule_.data(), sizeof schedule_);
    if (mode != 0) return kModeNotSupported;
    if (direction != Encrypt && direction != Decrypt) return kDirectionNotSupported;
    if (keyLength < Bits128 || keyLength > Bits256) return kKeyLengthNotSupported;
    if (key == nullptr) return kNoKey;

    const std::size_t keyWords = 4 + 2 * static_cast<std::size_t>(keyLength);
    const std::size_t allWords = 4 * (keyWords + 7);
    for (std::size_t i = 0; i < keyWords; ++i) {
        schedule_[i] = loadWord<std::uint32_t, std::endian::little>(key + 4 * i);
    }
    expandKey(schedule_.data(), keyWords, allWords);
    if (direction == Decrypt) turnForDecryption(schedule_.data(), allWords);
    rounds_ = static_cast<int>(keyWords) + 6;
    direction_ = direction;
    state_ = 0;
    return kOk;
}

int CipherContext::encryptBlock(const std::uint8_t* in, std::uint8_t* out) const noexcept {
    Block chain{};
    return encryptChained(in, out, 1, chain);
}

int CipherContext::decryptBlock(const std::uint8_t* in, std::uint8_t* out) const noexcept {
    Block chain{};
    return decryptChained(in, out, 1, chain);
}

int CipherContext::encryptChained(const std::uint8_t* in, std::uint8_t* out, std::size_t count,
                                  Block& chain) const noexcept {
    if (const int refusal = refusalOf(Encrypt); refusal != kOk) return refusal;
    code_.encrypt({schedule_.data(), rounds_}, in, out, count, chain.data());
    return kOk;
}

int CipherContext::decryptChained(const std::uint8_t* in, std::uint8_t* out, std::size_t count,
                                  Block& chain) const noexcept {
    if (const int refusal = refusalOf(Decrypt); refusal != kOk) return refusal;
    code_.decrypt({schedule_.data(), rounds_}, in, out, count, chain.data());
    return kOk;
}

int CipherContext::refusalOf(int direction) const noexcept {
    if (state_ != 0) return kNotInitialised;
    return direction == direction_ ? kOk : kWrongDirection;
}

}  // namespace corvalence::crypto
