#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace corvalence::platform::linux_system {

// For the many small files in which the system describes itself.

/// The content of a file that is no longer than `limit` bytes, whatever size its directory entry tells;
/// nothing where it is longer. Throws base::FileFailure.
std::optional<std::string> readShort(FileSystem& files, const std::string& path, std::size_t limit);

/// The same, and nothing where the file cannot be read.
std::optional<std::string> shortContent(FileSystem& files, const std::string& path, std::size_t limit);

/// The entries of a folder; none where it cannot be listed, and `isComplete` is false then.
std::vector<FolderEntry> entriesOrNone(FileSystem& files, const std::string& folder, bool& isComplete);
std::vector<FolderEntry> entriesOrNone(FileSystem& files, const std::string& folder);

/// Whether root alone can read the file, or what a link there leads to: it is root's and closed to others, or
/// lies in such a folder. False where there is no telling.
bool isForRootAlone(const std::string& path);

/// The text without blanks, tabs, carriage returns and form feeds at its ends.
std::string_view trimmed(std::string_view text) noexcept;

}  // namespace corvalence::platform::linux_system
