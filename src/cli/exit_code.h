#pragma once

namespace corvalence::cli {

/// How a command ended, as the process's exit code. Scripts rely on these numbers.
enum class ExitCode : int {
    Done = 0,         // and nothing differs
    Differences = 1,  // found, or something could not be checked or added
    Usage = 2,
    Refused = 3,  // password, no administrator, already running, no installation, changed database
    Failed = 4,
    Cancelled = 5,
};

}  // namespace corvalence::cli
