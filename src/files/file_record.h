#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/file_time.h"
#include "platform/file_system.h"

namespace corvalence::files {

/// The one-byte attribute field of a FileRecord.
using AttributeCode = std::uint8_t;

/// The code of a Windows attribute word: 0 becomes 8, words up to 256 stay, combinations of Compressed
/// (0x800) and Encrypted (0x4000) with Read only, Hidden and Archive map to 100 to 115, with or without the
/// not-content-indexed bit (0x2000); of any other word the low eight bits.
AttributeCode attributeCode(std::uint32_t attributes) noexcept;

/// One line of a File Contents database:
/// path 0x7F digest 0x7F size 0x7F attributes 0x7F written high 0x7F written low 0x7F created high 0x7F
/// created low 0x7F CR LF.
struct FileRecord {
    std::string path;
    std::string digest;      // lower-case hexadecimal, of the database's width
    std::uint32_t size = 0;  // low 32 bits of the size in bytes
    AttributeCode attributes = 0;
    base::FileTime written;
    base::FileTime created;

    static FileRecord of(std::string path, std::string digest, const platform::FileStatus& status);

    /// The line, its CR LF included.
    std::string render() const;
    /// Nothing where the line is no record whose digest has `width` characters.
    static std::optional<FileRecord> parse(std::string_view line, std::size_t width);
};

/// The path of a line: its text up to the first separator, the whole line where there is none.
std::string_view pathOfLine(std::string_view line) noexcept;

}  // namespace corvalence::files
