#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_time.h"
#include "crypto/digest_code.h"

namespace corvalence::store {

/// What kind of database a line of the Database Index stands for, by its second field. File Contents and
/// Complete System databases have a backup number there instead of a letter.
enum class DatabaseKind : char {
    Numbered = '#',
    DirectoryStructure = 'D',
    Permissions = 'P',
    Registry = 'R',
    Services = 'S',
};

/// One line of the Database Index:
/// path["*" digest code] 0x7F kind or number 0x7F created high 0x7F created low 0x7F digest 0x7F
/// [last check high 0x7F last check low 0x7F] LF.
struct IndexRecord {
    std::string path;                                     // bare, without "*" and code
    crypto::DigestCode digest = crypto::DigestCode::Md5;  // of numbered kinds
    DatabaseKind kind = DatabaseKind::Numbered;
    std::int64_t number = 0;  // N of "Backup File N", of numbered kinds
    base::FileTime created;
    std::string fileDigest;  // MD5 of the sealed file, 32 hexadecimal characters
    std::optional<base::FileTime> lastCheck;

    /// The line, its bare line feed included.
    std::string render() const;
    /// Nothing where the line is no record: fewer than five fields, a digest that is not 32 hexadecimal
    /// characters, an unknown kind, or numbers that do not parse.
    static std::optional<IndexRecord> parse(std::string_view line);
};

/// A sealed file of a database and the MD5 that its sealed bytes must have, as 32 hexadecimal characters.
struct SealedFileRecord {
    std::string path;
    std::string digest;
};

/// Whether a line passes the test that proves a password: something before each of its first two separators
/// and 32 hexadecimal characters between the fourth and the fifth.
bool provesPassword(std::string_view line);

}  // namespace corvalence::store
