#include "components/permission_record.h"

#include <algorithm>
#include <charconv>

#include "base/record_text.h"
#include "components/drive_walk.h"

namespace corvalence::components {

namespace {

constexpr std::string_view kNoList = "0,0,0";
constexpr std::string_view kUnnamed = "Unnamed account";

/// Rights that no column shows.
constexpr std::array<PermissionColumn, 4> kFurtherRights = {{
    {"Take Ownership", 0x8'0000},
    {"Set User ID", platform::access_right::kSetUserId},
    {"Set Group ID", platform::access_right::kSetGroupId},
    {"Sticky", platform::access_right::kSticky},
}};

/// A name and the comma behind it.
void appendName(std::string& text, const platform::AccessEntry& entry, const std::string& name) {
    constexpr std::string_view kBreaks("\r\n\x7F\0", 4);
    const bool isUnnamed = entry.state == platform::AccountState::Unnamed;
    for (const char c : isUnnamed ? kUnnamed : std::string_view(name))
        text += kBreaks.find(c) == std::string_view::npos ? c : ' ';
    text += ',';
}

/// Hands each entry behind the path to `visit`; false where one is none, or does not end.
template <typename Visit>
bool forEachEntry(std::string_view line, Visit visit) {
    std::string_view rest = line.substr(std::min(permissionPath(line).size() + 1, line.size()));
    while (!rest.empty()) {
        const std::size_t end = rest.find(base::kSeparator);
        if (end == std::string_view::npos) return false;
        const auto entry = parsePermissionEntry(rest.substr(0, end));
        if (!entry) return false;
        visit(*entry);
        rest.remove_prefix(end + 1);
    }
    return true;
}

std::string hexNumber(std::uint32_t number) {
    std::array<char, 8> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    return "0x" + std::string(digits.data(), end);
}

std::string rightName(std::uint32_t bit) {
    const auto named = [bit](const PermissionColumn& each) { return each.mask == bit; };
    if (const auto* const row = std::find_if(kPermissionColumns.begin(), kPermissionColumns.end(), named);
        row != kPermissionColumns.end()) {
        return std::string(row->name);
    }
    const auto* const row = std::find_if(kFurtherRights.begin(), kFurtherRights.end(), named);
    return row == kFurtherRights.end() ? hexNumber(bit) : std::string(row->name);
}

}  // namespace

std::string renderAccessList(const std::optional<std::vector<platform::AccessEntry>>& list) {
    std::string text;
    if (!list) {
        base::appendField(text, kNoList);
        return text;
    }
    for (const platform::AccessEntry& entry : *list) {
        appendName(text, entry, entry.account);
        appendName(text, entry, entry.domain);
        base::appendField(text, std::to_string(entry.rights));
    }
    return text;
}

std::optional<PermissionEntry> parsePermissionEntry(std::string_view text) noexcept {
    const std::size_t last = text.rfind(',');
    if (last == std::string_view::npos || last == 0) return std::nullopt;
    const std::size_t first = text.rfind(',', last - 1);
    if (first == std::string_view::npos) return std::nullopt;
    PermissionEntry entry{text.substr(0, first), text.substr(first + 1, last - first - 1), 0};
    const char* const end = text.data() + text.size();
    const auto scanned = std::from_chars(text.data() + last + 1, end, entry.rights);
    if (scanned.ec != std::errc() || scanned.ptr != end) return std::nullopt;
    return entry;
}

bool isPermissionRecord(std::string_view line) noexcept {
    const std::string_view path = permissionPath(line);
    return path.size() < line.size() && isAbsoluteComponentPath(path) &&
           forEachEntry(line, [](const PermissionEntry&) {});
}

std::string_view permissionPath(std::string_view line) noexcept {
    return line.substr(0, line.find(base::kSeparator));
}

std::vector<PermissionEntry> permissionEntries(std::string_view line) {
    std::vector<PermissionEntry> entries;
    forEachEntry(line, [&](const PermissionEntry& entry) { entries.push_back(entry); });
    return entries;
}

std::vector<std::string> rightNames(std::uint32_t rights) {
    std::vector<std::string> names;
    for (std::uint32_t bit = 1; bit != 0; bit <<= 1) {
        if ((rights & bit) != 0) names.push_back(rightName(bit));
    }
    return names;
}

}  // namespace corvalence::components
