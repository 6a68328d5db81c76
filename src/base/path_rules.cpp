#include "base/path_rules.h"

#include <algorithm>
#include <vector>

namespace corvalence::base {

namespace {

char folded(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Length of the part that ".." cannot climb over: "/" on Linux; "C:\" or "\\server\share\" on Windows.
std::size_t rootLength(const PathRules& rules, std::string_view path) noexcept {
    if (path.empty()) return 0;
    if (rules.separator == '/') return path.front() == '/' ? 1 : 0;
    if (path.size() >= 3 && path[1] == ':' && rules.isSeparator(path[2])) return 3;
    if (path.size() >= 2 && rules.isSeparator(path[0]) && rules.isSeparator(path[1])) {
        std::size_t at = 2;
        for (int part = 0; part < 2 && at < path.size(); ++part) {
            while (at < path.size() && !rules.isSeparator(path[at]))
                ++at;
            if (at < path.size()) ++at;
        }
        return at;
    }
    return 0;
}

bool startsWithDrive(const PathRules& rules, std::string_view path) noexcept {
    return rules.separator == '\\' && path.size() >= 2 && path[1] == ':';
}

/// The path with a root in front: its own, or what it lacks of the current folder.
std::string rooted(const PathRules& rules, std::string_view path, std::string_view currentFolder) {
    if (rootLength(rules, path) > 0) return std::string(path);
    if (startsWithDrive(rules, path)) {
        // "D:name" starts from the current folder of that drive: known for the present drive, its top for
        // others.
        const std::string_view drive = path.substr(0, 2);
        const bool isPresent = rules.equal(currentFolder.substr(0, 2), drive);
        return rules.join(isPresent ? currentFolder : drive, path.substr(2));
    }
    if (rules.separator == '\\' && rules.isSeparator(path.front())) {
        // "\folder" starts from the top of the present drive or share.
        return rules.join(currentFolder.substr(0, rootLength(rules, currentFolder)), path.substr(1));
    }
    return rules.join(currentFolder, path);
}

}  // namespace

bool PathRules::equal(std::string_view a, std::string_view b) const noexcept {
    return a.size() == b.size() && beginsWith(a, b);
}

bool PathRules::beginsWith(std::string_view text, std::string_view prefix) const noexcept {
    if (text.size() < prefix.size()) return false;
    if (!ignoresCase) return text.substr(0, prefix.size()) == prefix;
    return std::equal(prefix.begin(), prefix.end(), text.begin(),
                      [](char a, char b) { return folded(a) == folded(b); });
}

std::string PathRules::comparisonKey(std::string_view path) const {
    std::string key(path);
    if (ignoresCase) std::transform(key.begin(), key.end(), key.begin(), folded);
    return key;
}

std::string_view PathRules::fileName(std::string_view path) const noexcept {
    return path.substr(folder(path).size());
}

std::string_view PathRules::folder(std::string_view path) const noexcept {
    std::size_t end = path.size();
    while (end > 0 && !isSeparator(path[end - 1]))
        --end;
    return path.substr(0, end);
}

std::string PathRules::withSeparator(std::string_view folderPath) const {
    std::string text(folderPath);
    if (text.empty() || !isSeparator(text.back())) text.push_back(separator);
    return text;
}

std::string PathRules::join(std::string_view folderPath, std::string_view name) const {
    return withSeparator(folderPath).append(name);
}

std::string PathRules::absolute(std::string_view path, std::string_view currentFolder) const {
    if (path.empty()) return {};
    const std::string whole = rooted(*this, path, currentFolder);
    const std::size_t root = rootLength(*this, whole);
    std::vector<std::string_view> parts;
    const std::string_view text = whole;
    for (std::size_t at = root; at <= text.size();) {
        std::size_t end = at;
        while (end < text.size() && !isSeparator(text[end]))
            ++end;
        const std::string_view part = text.substr(at, end - at);
        if (part == "..") {
            if (!parts.empty()) parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        at = end + 1;
    }
    std::string clean = whole.substr(0, root);
    std::replace_if(
        clean.begin(), clean.end(), [this](char c) { return isSeparator(c); }, separator);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) clean.push_back(separator);
        clean.append(parts[i]);
    }
    return clean;
}

}  // namespace corvalence::base
