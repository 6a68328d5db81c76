#pragma once

#include <string_view>

#include "platform/file_system.h"

namespace corvalence::platform::linux_system {

/// Asks for the status of `name` below the open folder `folder` (or of an absolute path, or, with an empty
/// name and AT_EMPTY_PATH among the flags, of `folder` itself). `shownName` decides the hidden bit. Returns 0
/// or the error number.
int queryStatus(int folder, const char* name, int flags, std::string_view shownName, FileStatus& status);

/// What stands behind the last slash.
std::string_view lastName(std::string_view path) noexcept;

/// Everything in front of the last name: "/" for a file at the top, "." for a bare name.
std::string folderOf(const std::string& path);

}  // namespace corvalence::platform::linux_system
