#pragma once

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "base/bytes.h"
#include "crypto/sha_code.h"

namespace corvalence::crypto {

/// The secure hash family of FIPS 180-4 by type number. No allocation on the data path.
///
/// Throws std::runtime_error: "Invalid SHA_TYPE type!" for a type outside 1 to 5 (also from Update and Final
/// before a good Init, and after a Final), "Unfinished execution!" from the accessors before Final.
class HashEngine {
  public:
    enum SHA_TYPE : int { SHA1 = 1, SHA224 = 2, SHA256 = 3, SHA384 = 4, SHA512 = 5 };

    /// Code for the compression functions: Portable everywhere, Accelerated where the processor has what it
    /// needs (SHA instructions for SHA-1, SHA-224 and SHA-256; AVX and BMI2 for SHA-384 and SHA-512).
    /// Automatic picks at run time; the others are for tests and benchmarks, and Accelerated is portable code
    /// where it is not available.
    enum class Code { Automatic, Portable, Accelerated };
    static bool isAcceleratedAvailable(int type) noexcept;

    explicit HashEngine(Code code = Code::Automatic) noexcept;

    void Init(int type);
    void Update(base::ByteView bytes);
    void Final();
    /// Init, Update, Final; the hexadecimal text.
    const std::string& Hash(int type, base::ByteView bytes);

    /// Lower-case hexadecimal text of 40, 56, 64, 96 or 128 characters.
    const std::string& hexText() const;
    const char* hexCString() const;
    /// The digest bytes: 20, 28, 32, 48 or 64.
    base::ByteView rawDigest() const;

  private:
    bool isWide() const noexcept { return type_ >= SHA384; }
    std::size_t blockSize() const noexcept { return isWide() ? 128 : 64; }
    void compress(const std::uint8_t* blocks, std::size_t count) noexcept;
    void pad() noexcept;
    void requireFinished() const;

    ShaCode compressors_;
    int type_ = 0;           // 0 unless bytes may be fed
    bool finished_ = false;  // the digest stands in raw_ and text_
    std::array<std::uint32_t, 8> narrowState_{};
    std::array<std::uint64_t, 8> wideState_{};
    std::uint64_t countLow_ = 0;  // bytes fed, 128 bits wide
    std::uint64_t countHigh_ = 0;
    std::array<std::uint8_t, 128> buffer_{};
    std::array<std::uint8_t, 64> raw_{};
    std::size_t rawSize_ = 0;
    std::string text_;
};

}  // namespace corvalence::crypto
