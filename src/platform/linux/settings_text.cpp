#include "platform/linux/settings_text.h"

#include <algorithm>
#include <map>

#include "platform/linux/small_files.h"

namespace corvalence::platform::linux_system {

namespace {

bool isText(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte == 0x7F || (byte < 0x20 && c != '\t' && c != '\n' && c != '\r' && c != '\f');
    });
}

class Parser {
  public:
    /// False for a line that is no setting.
    bool take(std::string_view line) {
        if (line.empty() || line.front() == '#' || line.front() == ';' || line.starts_with("//")) return true;
        if (line.front() == '[') {
            const std::size_t end = line.find(']');
            if (end == std::string_view::npos) return false;
            enter(std::string(line.substr(1, end - 1)));
            return true;
        }
        const std::size_t sign = line.find('=');
        if (sign == std::string_view::npos || sign == 0) return false;
        add(std::string(trimmed(line.substr(0, sign))), std::string(trimmed(line.substr(sign + 1))));
        return true;
    }

    SettingsText settings() && { return std::move(settings_); }
    bool hasAny() const noexcept { return !settings_.sections.empty(); }

  private:
    void enter(std::string name) {
        const auto [place, isNew] = places_.emplace(name, settings_.sections.size());
        current_ = place->second;
        if (isNew) settings_.sections.push_back({std::move(name), {}});
    }

    void add(std::string name, std::string value) {
        if (settings_.sections.empty()) enter("");
        const std::size_t times = ++times_[{current_, name}];
        if (times > 1) name += " (" + std::to_string(times) + ")";
        settings_.sections[current_].values.emplace_back(std::move(name), std::move(value));
    }

    SettingsText settings_;
    std::map<std::string, std::size_t> places_;
    std::map<std::pair<std::size_t, std::string>, std::size_t> times_;
    std::size_t current_ = 0;
};

}  // namespace

std::optional<SettingsText> parseSettings(std::string_view text) {
    if (!isText(text)) return std::nullopt;
    Parser parser;
    while (!text.empty()) {
        std::string line;
        for (bool goesOn = true; goesOn && !text.empty();) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            std::string_view part = trimmed(text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
            goesOn = part.ends_with('\\');
            if (goesOn) part.remove_suffix(1);
            line += part;
        }
        if (!parser.take(line)) return std::nullopt;
    }
    return parser.hasAny() ? std::optional(std::move(parser).settings()) : std::nullopt;
}

}  // namespace corvalence::platform::linux_system
