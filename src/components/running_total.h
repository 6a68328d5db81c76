#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/user_interface.h"

namespace corvalence::components {

inline constexpr std::string_view kTotalFiles = "Total Number Of Files: ";
inline constexpr std::string_view kTotalServices = "Total Number Of Services: ";
inline constexpr std::string_view kTotalValues = "Total Number Of Registry Values: ";

/// Shows how many there have been so far, at every tenth: a text for each would take time, and nobody sees
/// it.
inline void showTotal(platform::Progress& progress, std::string_view label, std::uint64_t count) {
    constexpr std::uint64_t kInterval = 10;
    if (count % kInterval == 0) progress.label(std::string(label) + std::to_string(count));
}

}  // namespace corvalence::components
