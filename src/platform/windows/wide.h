#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvalence::platform::windows_system {

/// UTF-8 as UTF-16. Empty where it is not UTF-8.
std::optional<std::wstring> toWide(std::string_view text);

/// UTF-16 as UTF-8. A half of a surrogate pair, which file names may hold, becomes three bytes as if it were
/// a character of its own, and toWide() turns these back, so that every name can be reached.
std::string toUtf8(std::wstring_view text);

/// The form in which the system takes a path of any length and takes its names literally:
/// "\\?\C:\folder\name",
/// "\\?\UNC\server\share\name". Slashes, doubled and closing separators and full stops as names are cleaned
/// away. Throws base::FileFailure: FileNotFound for the empty path, BadPath for one that is not absolute, not
/// UTF-8, holds a NUL, names a stream of a file, or has a name of more than 255 units.
std::wstring systemPath(const std::string& path);

/// Whether systemPath() takes it.
bool isSystemPath(const std::string& path) noexcept;

/// What the system tells as a final path, as the program writes it.
std::string plainPath(std::wstring_view path);

}  // namespace corvalence::platform::windows_system
