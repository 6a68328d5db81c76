#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access_lists.h"

namespace corvalence::components {

/// An entry of an access list as records tell it.
struct PermissionEntry {
    std::string_view account;
    std::string_view domain;
    std::uint32_t rights = 0;
};

/// A column of access lists where they are shown: an entry has a tick in it where its rights have all bits of
/// the mask.
struct PermissionColumn {
    std::string_view name;
    std::uint32_t mask;

    constexpr bool ticks(std::uint32_t rights) const noexcept { return (rights & mask) == mask; }
};

/// Behind the columns of account and domain.
inline constexpr std::array<PermissionColumn, 14> kPermissionColumns = {{
    {"Full Control", 0xF'01FF},
    {"Read", 0x8},
    {"Write", 0x10},
    {"Execute", 0x2'00A9},
    {"List Folder", 0x1},
    {"Traverse Folder", 0x20},
    {"Create Files", 0x2},
    {"Create Folders", 0x4},
    {"Delete", 0x1'0000},
    {"Delete Subfolders/Files", 0x40},
    {"Read Permissions", 0x2'0000},
    {"Change Permissions", 0x4'0000},
    {"Read Attributes", 0x80},
    {"Change Attributes", 0x100},
}};

/// Longest record, its CR LF included: room for the longest list that a file can have.
inline constexpr std::size_t kPermissionLineLimit = 1'000'000;

/// The entries of an access list, each with the separator behind it; the sign for none where there is none. A
/// separator or a line break in a name becomes a blank.
std::string renderAccessList(const std::optional<std::vector<platform::AccessEntry>>& list);

/// An entry of the form "account,domain,rights"; nothing where it is none. A comma in the account's name does
/// no harm.
std::optional<PermissionEntry> parsePermissionEntry(std::string_view text) noexcept;

/// Whether the line of a database or a report is a record: an absolute path and entries.
bool isPermissionRecord(std::string_view line) noexcept;
/// The path of a record.
std::string_view permissionPath(std::string_view line) noexcept;
/// What stands behind the path of a record and its separator, entry by entry.
std::vector<PermissionEntry> permissionEntries(std::string_view line);

/// The names of the bits that are set in `rights`, from the lowest bit on; a bit without a name as a number.
/// Set-id bits and the sticky bit, which no column shows, have theirs.
std::vector<std::string> rightNames(std::uint32_t rights);

}  // namespace corvalence::components
