#pragma once

#include <string>
#include <vector>

#include "platform/windows/handle.h"

namespace corvalence::test {

/// Starts a program with these arguments and standard handles, which it inherits. Throws std::system_error.
platform::windows_system::Handle startProgram(const std::string& program,
                                              const std::vector<std::string>& arguments, HANDLE input,
                                              HANDLE output, HANDLE error);
/// Waits for its end.
int exitCodeOf(const platform::windows_system::Handle& process);

}  // namespace corvalence::test
