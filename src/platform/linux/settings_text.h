#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvalence::platform::linux_system {

struct SettingsSection {
    std::string name;  // empty for what stands in front of the first section
    /// In the order of the file. A name that comes again has a number behind it: "UUID (2)".
    std::vector<std::pair<std::string, std::string>> values;
};

struct SettingsText {
    std::vector<SettingsSection> sections;  // each name once
};

/// Reads a text of key=value lines, sections in brackets, comments behind "#", ";" or "//" and blank lines; a
/// backslash at the end of a line goes on with the next. Nothing for a text that holds any other line, a
/// control character, or no setting at all.
std::optional<SettingsText> parseSettings(std::string_view text);

}  // namespace corvalence::platform::linux_system
