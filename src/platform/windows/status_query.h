#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/file_system.h"

namespace corvalence::platform::windows_system {

/// The status of what is open.
FileStatus statusOf(HANDLE handle, const std::string& path);

/// What the folder's entry says of a file that no handle can be had of, as somebody else keeps all others
/// out. It has no identity. Empty where there is none.
std::optional<FileStatus> statusByEntry(const std::string& path);

/// The entries of an open folder but "." and "..", as the system orders them.
std::vector<FolderEntry> entriesOf(HANDLE folder, const std::string& path);

}  // namespace corvalence::platform::windows_system
