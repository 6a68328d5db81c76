#pragma once

#include <string>
#include <vector>

namespace corvalence::test {

/// Runs a program with these arguments (its own name aside) and waits for its end. Its exit code, or 1000 and
/// the number of the signal that ended it.
int runProgram(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace corvalence::test
