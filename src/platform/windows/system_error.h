#pragma once

#include <windows.h>

#include <string>

#include "base/file_failure.h"

namespace corvalence::platform::windows_system {

/// The failure that a system error number stands for.
base::FileFailure failureOf(DWORD error, const std::string& path);

/// Throws the failure that GetLastError() stands for.
[[noreturn]] void throwSystemError(const std::string& path);

/// Whether an error says that nothing stands at a path.
bool isMissing(DWORD error) noexcept;

}  // namespace corvalence::platform::windows_system
