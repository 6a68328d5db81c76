#pragma once

#include <string>

namespace corvalence::platform::linux_system {

/// Whether a folder lies on a file system that the kernel makes up while it is read (processes, devices, its
/// own settings) and that stores nothing. False where there is no telling.
bool isPseudoFileSystem(const std::string& folder);

}  // namespace corvalence::platform::linux_system
