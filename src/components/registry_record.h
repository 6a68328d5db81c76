#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/system_registry.h"

namespace corvalence::components {

/// Longest record of a value, its CR LF included.
inline constexpr std::size_t kRegistryLineLimit = 1'000'000;

/// Type and data of a value as records tell them, with the separator between them; the type alone for a value
/// that the system refuses to give. Of a protected value its digest takes the place of the data. A text that
/// may hold line breaks keeps them, as CR LF. Nothing where the text would be longer than a record may be.
std::optional<std::string> renderRegistryValue(const platform::RegistryValue& value);

/// Whether it is a list of texts of a size that the user is asked to be patient with.
bool isVeryLarge(const platform::RegistryValue& value) noexcept;

/// In the place of a value: a key without values, and one that cannot be opened.
inline constexpr std::string_view kEmptyKey = "REG_SZ\x7F ";
inline constexpr std::string_view kUndefinedKey = "Undefined\x7FUndefined";

/// Whether a line begins a record: a root and a backslash, and a separator further on. Any other line goes on
/// with the value before it.
bool beginsRegistryRecord(std::string_view line) noexcept;

/// The first line of a record, or of its type and data.
std::string_view firstLine(std::string_view text) noexcept;

}  // namespace corvalence::components
