#pragma once

#include <string>

#include "platform/clock.h"

namespace corvalence::platform {

/// A stored time, UTC, as local time text: "09:05:07   3.11.2004", or "Indeterminate" before 1970.
std::string formatFileTime(Clock& clock, base::FileTime time);

}  // namespace corvalence::platform
