#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_time.h"

namespace corvalence::base {

/// Separates the fields of every text record; may occur in no field.
inline constexpr char kSeparator = '\x7F';

/// Longest line, its end included, that a reader of text records takes.
inline constexpr std::size_t kLineLimit = 600;

/// Longest path that a record holds, in bytes.
inline constexpr std::size_t kPathLimit = 260;

/// The fields of a line in order; a closing separator opens no further field. Views into `line`.
std::vector<std::string_view> splitFields(std::string_view line);

/// Whether a record can hold this path: 1 to kPathLimit bytes, no separator, no line break, no NUL.
bool isRecordPath(std::string_view path) noexcept;

/// The line without a line feed and a carriage return in front of it.
std::string_view withoutLineEnd(std::string_view line) noexcept;

/// Appends a field and the separator behind it.
void appendField(std::string& line, std::string_view field);

/// Appends a time as two fields, the high and the low half.
void appendTime(std::string& line, FileTime time);

/// The time of two such fields; nothing where one is no number.
std::optional<FileTime> scanTime(std::string_view high, std::string_view low);

/// What the last block of a sealed text leaves behind the last record is shorter than a block.
inline constexpr std::uint64_t kStaleTailLimit = 16;

/// Whether the last `size` bytes of an unsealed text, which begin with a line that is no record, are what its
/// last block left behind. More of them are damage.
constexpr bool isStaleTail(std::uint64_t size) noexcept {
    return size < kStaleTailLimit;
}

}  // namespace corvalence::base
