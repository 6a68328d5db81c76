#pragma once

#include <cstdint>
#include <string>

#include "files/folder_walk.h"

namespace corvalence::files {

/// What an add command did not bring in, a line each: "3 passed over: symbolic links."; those that could not
/// be read by their paths and reasons, at most `most` of them. Empty where there is nothing to say. Paths
/// are safe to show.
std::string leftOutText(std::uint64_t failed, std::uint64_t ownFiles, const PassedOver& passedOver,
                        std::size_t most = SIZE_MAX);

}  // namespace corvalence::files
