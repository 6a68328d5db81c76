#include "components/permission_report.h"

#include "components/permission_record.h"

namespace corvalence::components {

namespace {

/// Whether a line is the first of its two.
constexpr bool isBefore(std::size_t number) noexcept {
    return number % 2 == 0;
}

/// The domain with what no column shows, since two rows could look the same otherwise.
std::string domainText(const PermissionEntry& entry) {
    namespace right = platform::access_right;
    std::string text(entry.domain);
    for (const std::uint32_t bit : {right::kSetUserId, right::kSetGroupId, right::kSticky}) {
        if ((entry.rights & bit) != 0) text += " [" + rightNames(bit).front() + "]";
    }
    return text;
}

}  // namespace

bool PermissionRenderer::beginsRecord(std::size_t number, std::string_view) const {
    return isBefore(number);
}

std::vector<std::vector<std::string>> PermissionRenderer::rows(std::string_view line) const {
    std::vector<std::vector<std::string>> rows;
    if (!isPermissionRecord(line)) return rows;
    std::vector<PermissionEntry> entries = permissionEntries(line);
    if (entries.empty()) entries.emplace_back();  // nobody may do anything
    const std::string_view path = permissionPath(line);
    for (const PermissionEntry& entry : entries) {
        std::vector<std::string>& row = rows.emplace_back();
        row = {std::string(paths_.fileName(path)), std::string(paths_.folder(path)),
               std::string(entry.account), domainText(entry)};
        for (const PermissionColumn& column : kPermissionColumns)
            row.emplace_back(column.ticks(entry.rights) ? "Yes" : "No");
    }
    return rows;
}

std::optional<std::vector<std::string>> PermissionRenderer::columns(std::string_view line) const {
    auto all = rows(line);
    if (all.empty()) return std::nullopt;
    return std::move(all.front());
}

std::vector<reports::ReportField> PermissionRenderer::fields(std::size_t number,
                                                             std::string_view line) const {
    if (!isPermissionRecord(line)) return {};
    std::string entries;
    for (const PermissionEntry& entry : permissionEntries(line)) {
        if (!entries.empty()) entries += '\n';
        entries.append(entry.account).append(1, ',').append(entry.domain).append(1, ',');
        entries += std::to_string(entry.rights);
    }
    return {{"code", isBefore(number) ? "Cf" : "Ct"},
            {"path", std::string(permissionPath(line)), true},
            {"entries", std::move(entries)}};
}

std::string PermissionRenderer::text(std::size_t number, std::string_view line) const {
    if (!isPermissionRecord(line)) return {};
    std::string text;
    if (isBefore(number)) {
        text.append("The Permissions for ").append(permissionPath(line)).append(" have been changed!\n\n");
        text += "Previous Permissions: \n\n";
    } else {
        text += "New Permissions: \n\n";
    }
    for (const PermissionEntry& entry : permissionEntries(line)) {
        text.append("Account: ").append(entry.account).append("\nDomain: ").append(entry.domain);
        text += "\nPermissions: \n";
        for (const std::string& name : rightNames(entry.rights))
            text.append(name).append(1, '\n');
        text += '\n';
    }
    return text;
}

}  // namespace corvalence::components
