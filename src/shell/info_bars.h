#pragma once

#include <optional>
#include <string>

#include "platform/system_status.h"

namespace corvalence::shell {

/// What an info bar shows: a text, and how much of its length a bar is drawn, in percent.
struct InfoBarContent {
    std::string text;
    std::optional<unsigned> percent;

    bool operator==(const InfoBarContent&) const = default;
};

/// "Memory available: 42%". Without a number where the system does not tell.
InfoBarContent memoryBar(const std::optional<platform::Capacity>& memory);
/// "Disk space available: 1.50 GB".
InfoBarContent diskSpaceBar(const std::optional<platform::Capacity>& disk);
/// "Next check: 00:00:07".
InfoBarContent countdownBar(const std::string& countdown);

}  // namespace corvalence::shell
