#include "platform/linux/mime_file_types.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>

namespace corvalence::platform::linux_system {

namespace {

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

/// Cuts off and gives what stands in front of the next separator.
std::string_view takeField(std::string_view& rest, char separator) {
    const std::size_t end = std::min(rest.find(separator), rest.size());
    const std::string_view field = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return field;
}

struct Entity {
    std::string_view name;
    char character;
};
constexpr std::array kEntities = {Entity{"&lt;", '<'}, Entity{"&gt;", '>'}, Entity{"&quot;", '"'},
                                  Entity{"&apos;", '\''}, Entity{"&amp;", '&'}};

std::string withoutEntities(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const auto entity = std::find_if(kEntities.begin(), kEntities.end(), [&](const Entity& e) {
            return text.substr(0, e.name.size()) == e.name;
        });
        plain.push_back(entity == kEntities.end() ? text.front() : entity->character);
        text.remove_prefix(entity == kEntities.end() ? 1 : entity->name.size());
    }
    return plain;
}

/// The text of the first <comment> that names no language, which is the one in the database's own language.
std::optional<std::string> plainComment(std::string_view xml) {
    constexpr std::string_view kOpen = "<comment>";
    const std::size_t open = xml.find(kOpen);
    const std::size_t close = xml.find("</comment>", open);
    if (open == std::string_view::npos || close == std::string_view::npos) return std::nullopt;
    const std::size_t begin = open + kOpen.size();
    return withoutEntities(xml.substr(begin, close - begin));
}

}  // namespace

void MimeFileTypes::addLine(std::string_view line) {
    // weight:type:glob[:flags]
    const std::string_view weightText = takeField(line, ':');
    const std::string_view type = takeField(line, ':');
    const std::string_view glob = takeField(line, ':');
    Rule rule{0, std::string(type)};
    const auto result =
        std::from_chars(weightText.data(), weightText.data() + weightText.size(), rule.weight);
    constexpr std::string_view kAnyName = "*.";
    if (result.ec != std::errc() || glob.substr(0, 2) != kAnyName) return;
    const std::string_view extension = glob.substr(kAnyName.size());
    if (extension.empty() || extension.find_first_of("*?[") != std::string_view::npos) return;
    const bool isExact = line.find("cs") != std::string_view::npos;
    Rule& present = isExact ? exact_[std::string(extension)] : folded_[lowered(extension)];
    if (present.type.empty() || rule.weight > present.weight) present = std::move(rule);
}

void MimeFileTypes::load() {
    isLoaded_ = true;
    std::ifstream file(folder_ + "/globs2", std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.front() != '#') addLine(line);
    }
}

std::optional<std::string> MimeFileTypes::typeText(std::string_view extension) {
    if (!isLoaded_) load();
    const auto exact = exact_.find(extension);
    const auto folded = folded_.find(lowered(extension));
    if (exact == exact_.end() && folded == folded_.end()) return std::nullopt;
    const std::string& type = exact != exact_.end() ? exact->second.type : folded->second.type;
    std::ifstream file(folder_ + "/" + type + ".xml", std::ios::binary);
    return plainComment(std::string(std::istreambuf_iterator<char>(file), {}));
}

}  // namespace corvalence::platform::linux_system
