#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

#include "cli/context.h"

namespace corvalence::cli {

/// What a command line asks for.
struct Invocation {
    Options options;
    std::function<ExitCode(Context&)> command;
};

/// Reads the arguments behind the program's name. An exit code where there is nothing left to do: help and
/// version were written to `out`, or what is wrong with the usage to `err`.
std::variant<Invocation, ExitCode> parseCommandLine(const std::vector<std::string>& arguments,
                                                    std::ostream& out, std::ostream& err);

}  // namespace corvalence::cli
