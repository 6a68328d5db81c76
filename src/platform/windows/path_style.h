#pragma once

#include "base/path_rules.h"

namespace corvalence::platform::windows_system {

/// How Windows writes and compares paths.
inline constexpr base::PathRules kPaths{'\\', true};

}  // namespace corvalence::platform::windows_system
