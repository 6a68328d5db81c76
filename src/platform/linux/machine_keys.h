#pragma once

#include <string>
#include <vector>

#include "platform/linux/key_tree.h"

namespace corvalence::platform::linux_system {

// What the system tells about itself, as keys. A file that is missing gives no keys.

/// Accounts with number, group, full name, home and shell, and groups with number and members, from the files
/// passwd(5) and group(5) of a folder.
GatheredKeys::Keys accountKeys(FileSystem& files, const std::string& folder);

/// The kinds of files by pattern, from the file "globs2" of a shared MIME database.
GatheredKeys::Keys fileTypeKeys(FileSystem& files, const std::string& folder);

/// By kind of file the programs that open it, from lists of default and of registered programs.
GatheredKeys::Keys applicationKeys(FileSystem& files, const std::vector<std::string>& lists);

/// What the machine was started with and is made of: boot command line, loaded modules, mounts, devices.
/// `proc` and `sys`: where the kernel shows them.
GatheredKeys::Keys machineKeys(FileSystem& files, const std::string& proc, const std::string& sys);

}  // namespace corvalence::platform::linux_system
