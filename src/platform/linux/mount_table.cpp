#include "platform/linux/mount_table.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>

namespace corvalence::platform::linux_system {

namespace {

std::vector<std::string_view> splitAt(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

/// The kernel writes blanks, tabs, line feeds and backslashes as a backslash and three octal digits.
std::string unescaped(std::string_view text) {
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view digits = text.substr(at + 1, 3);
        if (text[at] == '\\' && digits.size() == 3 && std::all_of(digits.begin(), digits.end(), isOctal)) {
            plain.push_back(
                static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0')));
            at += 3;
        } else {
            plain.push_back(text[at]);
        }
    }
    return plain;
}

}  // namespace

std::vector<Mount> parseMounts(std::string_view text) {
    // id, parent, device, root, mount point, options, any number of tags, "-", type, source, options
    constexpr std::size_t kDevice = 2;
    constexpr std::size_t kPoint = 4;
    constexpr std::ptrdiff_t kFirstTag = 6;
    std::vector<Mount> mounts;
    for (const std::string_view line : splitAt(text, '\n')) {
        const std::vector<std::string_view> fields = splitAt(line, ' ');
        if (fields.size() < static_cast<std::size_t>(kFirstTag)) continue;
        const auto dash = std::find(fields.begin() + kFirstTag, fields.end(), "-");
        if (std::distance(dash, fields.end()) < 3) continue;
        Mount mount;
        const std::string_view id = fields.front();
        if (std::from_chars(id.data(), id.data() + id.size(), mount.id).ec != std::errc()) continue;
        mount.device = std::string(fields[kDevice]);
        mount.point = unescaped(fields[kPoint]);
        mount.type = unescaped(dash[1]);
        mount.source = unescaped(dash[2]);
        mounts.push_back(std::move(mount));
    }
    return mounts;
}

std::vector<Mount> readMounts() {
    std::ifstream file("/proc/self/mountinfo", std::ios::binary);
    return parseMounts(std::string(std::istreambuf_iterator<char>(file), {}));
}

}  // namespace corvalence::platform::linux_system
