#pragma once

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "base/bytes.h"

namespace corvalence::crypto {

/// The secure hash family of FIPS 180-4 by type number. No allocation on the data path.
///
/// Throws std::runtime_error: "Invalid SHA_TYPE type!" for a type outside 1 to 5 (also from update and final before a
/// good init), "Unfinished execution!" from the accessors before Final.
class HashEngine {
  public:
    enum SHA_TYPE : int { SHA1 = 1, SHA224 = 2, SHA256 = 3, SHA384 = 4, SHA512 = 5 };

    /// Code for the compression functions: Portable everywhere, Accelerated where the processor has SHA
    /// instructions (for SHA-1, SHA-224 and SHA-256). Automatic picks at run time; the others are for tests and
    /// benchmarks, and Accelerated needs isAcceleratedAvailable().
    enum class Code { Automatic, Portable, Accelerated };
    static bool isAcceleratedAvailable() noexcept;

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

};

}  // namespace corvalence::crypto
