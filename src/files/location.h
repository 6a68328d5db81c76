#pragma once

#include <string>

#include "platform/platform.h"

namespace corvalence::files {

/// Location that stands for every drive.
inline constexpr std::string_view kAnyLocation = "*";

/// Why files cannot be added from below `location`, a full path, as the message for the user; empty where
/// they can. A drive that does not answer is told by its kind.
std::string locationRefusal(platform::Platform& system, const std::string& location);

}  // namespace corvalence::files
