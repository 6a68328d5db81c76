#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace corvalence::crypto {

/// The digest algorithm of a File Contents database, by the character that stands for it in the Database
/// Index.
enum class DigestCode : char { Md5 = '0', Sha1 = '1', Sha256 = '2', Sha512 = '3' };

struct DigestKind {
    DigestCode code;
    std::size_t width;               // hexadecimal characters of a digest
    std::string_view name;           // "SHA-256"
    std::string_view consoleName;    // "sha256"
    std::string_view columnHeading;  // "Digest value [SHA256]"
};

inline constexpr std::array<DigestKind, 4> kDigestKinds = {{
    {DigestCode::Md5, 32, "MD5", "md5", "Digest value [MD5]"},
    {DigestCode::Sha1, 40, "SHA-1", "sha1", "Digest value [SHA1]"},
    {DigestCode::Sha256, 64, "SHA-256", "sha256", "Digest value [SHA256]"},
    {DigestCode::Sha512, 128, "SHA-512", "sha512", "Digest value [sha512]"},
}};

constexpr const DigestKind& digestKind(DigestCode code) noexcept {
    return kDigestKinds[static_cast<std::size_t>(static_cast<char>(code) - '0')];
}

constexpr std::optional<DigestCode> digestCodeOf(char character) noexcept {
    if (character < '0' || character > '3') return std::nullopt;
    return static_cast<DigestCode>(character);
}

}  // namespace corvalence::crypto
