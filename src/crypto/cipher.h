#pragma once

#include <array>
#include <cstdint>

#include "base/bytes.h"
#include "crypto/aes_code.h"

namespace corvalence::crypto {

/// Rijndael with 128-bit blocks (FIPS 197). Modes and padding are not built: chaining is the sealed file
/// codec's own.
///
/// A context lives on its user's stack, allocates nothing and zeroes its key schedule when it goes.
class CipherContext {
  public:
    static constexpr std::size_t kBlockSize = 16;
    using Block = std::array<std::uint8_t, kBlockSize>;

    enum Direction : int { Encrypt = 0, Decrypt = 1 };
    enum KeyLength : int { Bits128 = 0, Bits192 = 1, Bits256 = 2 };

    // What init and the block operations return.
    static constexpr int kOk = 0;
    static constexpr int kModeNotSupported = -1;
    static constexpr int kDirectionNotSupported = -2;
    static constexpr int kKeyLengthNotSupported = -3;
    static constexpr int kNoKey = -4;
    static constexpr int kNotInitialised = -5;
    static constexpr int kWrongDirection = -6;

    /// As HashEngine::Code, for the processor's AES instructions.
    enum class Code { Automatic, Portable, Accelerated };
    static bool isAcceleratedAvailable() noexcept;

    explicit CipherContext(Code code = Code::Automatic) noexcept;
    ~CipherContext();
    CipherContext(const CipherContext&) = delete;
    CipherContext& operator=(const CipherContext&) = delete;

    /// mode: 0, electronic codebook, is the only one. `key` holds 16, 24 or 32 bytes by `keyLength`; null
    /// gives kNoKey. A failed init leaves the context uninitialised.
    int init(int mode, int direction, const std::uint8_t* key, int keyLength) noexcept;

    /// One 16-byte block; in and out may be the same.
    int encryptBlock(const std::uint8_t* in, std::uint8_t* out) const noexcept;
    int decryptBlock(const std::uint8_t* in, std::uint8_t* out) const noexcept;

    /// `count` blocks in cipher block chaining (NIST SP 800-38A, 6.2). `chain` is the value before the first
    /// block and becomes the one behind the last. in and out may be the same.
    int encryptChained(const std::uint8_t* in, std::uint8_t* out, std::size_t count,
                       Block& chain) const noexcept;
    int decryptChained(const std::uint8_t* in, std::uint8_t* out, std::size_t count,
                       Block& chain) const noexcept;

  private:
    int refusalOf(int direction) const noexcept;

    int state_ = 1;  // 1 until an init has succeeded
    int direction_ = Encrypt;
    int rounds_ = 0;
    AesCode code_;
    alignas(16) std::array<std::uint32_t, 60> schedule_{};
};

}  // namespace corvalence::crypto
