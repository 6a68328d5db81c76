#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "base/bytes.h"
#include "crypto/cipher.h"

namespace corvalence::crypto {

/// The key of every sealed file: 32 bytes made from the password, zeroed when they go.
///
/// Bytes 0 to 15 are the MD5 of the password (RFC 1321). Bytes 16 to 31 come from feeding those 16 bytes to
/// the same context after its finish and finishing once more, so they are no plain hash of anything.
class SessionKey {
  public:
    static constexpr std::size_t kSize = 32;

    explicit SessionKey(std::string_view password) noexcept;
    ~SessionKey();
    SessionKey(const SessionKey&) = delete;
    SessionKey& operator=(const SessionKey&) = delete;

    const std::uint8_t* data() const noexcept { return bytes_.data(); }
    base::ByteView bytes() const noexcept { return bytes_; }
    /// Whether all bytes are equal, in a time that does not tell how many are.
    bool equals(const SessionKey& other) const noexcept;

  private:
    std::array<std::uint8_t, kSize> bytes_{};
};

/// The value that the first block of a sealed file is chained to.
using ChainValue = CipherContext::Block;

/// Of a database or a file beside it: the first 8 hexadecimal characters of the MD5 of its path as given,
/// twice.
ChainValue PathIV(std::string_view path) noexcept;
/// Of "Backup Index N", by its path, and of the sealed pieces in "Backup File N": the first 8 raw bytes of
/// the MD5, twice.
ChainValue BackupIV(std::string_view backupIndexPath) noexcept;

/// The chain values that are the same in every installation.
struct ChainValues {
    ChainValues() noexcept;

    ChainValue IndexIV;     // Database Index and reports
    ChainValue ScheduleIV;  // Database Checking Schedule
    ChainValue LogIV;       // log files and the program folder's state
    ChainValue RecentIV;    // strings of the recent-database list
};

/// What one run holds from the password stage to its end; passed by reference.
struct Session {
    explicit Session(std::string_view password) noexcept : key(password) {}

    SessionKey key;
    ChainValues chains;
};

}  // namespace corvalence::crypto
