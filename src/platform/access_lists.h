#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvalence::platform {

/// Bits of an access entry's rights that have no meaning on Windows.
namespace access_right {
inline constexpr std::uint32_t kSetUserId = 0x200000;   // on the owner's entry
inline constexpr std::uint32_t kSetGroupId = 0x400000;  // on the owning group's entry
inline constexpr std::uint32_t kSticky = 0x800000;      // on the entry of all others
}  // namespace access_right

/// How the account of an entry was looked up.
enum class AccountState {
    Known,
    Unnamed,  // no account bears the entry's identity (any more)
    Failed    // the system could not say
};

/// One entry of an access list, in Windows terms on both systems.
struct AccessEntry {
    AccountState state = AccountState::Known;
    /// Account and domain; both empty unless Known. On Linux every entry is Known: `account` is the name or,
    /// where none bears it, the number of a user or group, and `domain` is the class of the entry ("owner",
    /// "user", "group", "named group", "mask", "other", or one of these behind "default "); entries that
    /// speak of no account have their class for a name.
    std::string account;
    std::string domain;
    /// Access mask with the generic rights turned into what they stand for on files and without the right to
    /// wait for the file (0x100000). On Linux read, write and execute bring the bits that Windows means by
    /// them; the owner has the right to change the list (0xC0000) besides and, with all three, full control
    /// (0xF01FF).
    std::uint32_t rights = 0;
    /// Whether the entry is for the machine's group of administrators: the built-in group on Windows, the
    /// user 0 on Linux.
    bool isAdministrators = false;

    bool operator==(const AccessEntry&) const = default;
};

/// Who may do what with a file or folder: the discretionary list on Windows; on Linux owner, group and mode,
/// and the POSIX access list with a folder's default entries where there is one. All calls throw
/// base::FileFailure. Serves one thread.
class AccessLists {
  public:
    virtual ~AccessLists() = default;

    /// The entries in the list's own order; on Linux owner, named users, group, named groups, mask, other,
    /// then the default entries likewise. Empty where the file has no list at all, so that everybody may do
    /// everything; no entries where nobody may do anything. The link itself on Linux; its target on Windows.
    virtual std::optional<std::vector<AccessEntry>> read(const std::string& path) = 0;

    /// Takes the entries that `isUnwanted` picks out of the list and sets what is left, on Windows closed
    /// against entries that the folder above would hand down. On Linux the entries of group, mask and other
    /// stay but without rights, and the owner's stays as it is. Gives the number of entries taken or emptied;
    /// 0 leaves the file untouched. What already happened to a list that could not be set is told by reading
    /// it again.
    virtual std::size_t removeEntries(const std::string& path,
                                      const std::function<bool(const AccessEntry&)>& isUnwanted) = 0;
};

}  // namespace corvalence::platform
