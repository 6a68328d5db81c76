#pragma once

#include <string>

#include "base/file_failure.h"

namespace corvalence::platform::linux_system {

/// The failure that an error number stands for.
base::FileFailure failureOf(int error, const std::string& path);

/// Throws the failure that errno stands for.
[[noreturn]] void throwSystemError(const std::string& path);

/// The path for a system call. BadPath where it holds a NUL, which the system would take for its end.
const char* systemPath(const std::string& path);

}  // namespace corvalence::platform::linux_system
