#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

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

}  // namespace corvalence::base
