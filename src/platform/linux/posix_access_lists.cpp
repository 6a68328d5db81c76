#include "platform/linux/posix_access_lists.h"

#include <acl/libacl.h>
#include <fcntl.h>
#include <sys/acl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>

#include "platform/linux/descriptor.h"
#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

/// Rights as Windows means them, without the right to wait for the file.
namespace right {
constexpr std::uint32_t kRead = 0x2'0089;
constexpr std::uint32_t kWrite = 0x2'0116;
constexpr std::uint32_t kExecute = 0x2'00A0;
constexpr std::uint32_t kDeleteBelow = 0x40;
constexpr std::uint32_t kChangeList = 0xC'0000;
constexpr std::uint32_t kFullControl = 0xF'01FF;
}  // namespace right

constexpr const char* kAccessAttribute = "system.posix_acl_access";
constexpr const char* kDefaultAttribute = "system.posix_acl_default";

struct FreeList {
    void operator()(acl_t list) const noexcept { ::acl_free(list); }
};
using List = std::unique_ptr<std::remove_pointer_t<acl_t>, FreeList>;

/// A file held fast, so that its status and both its lists are those of one file.
struct HeldFile {
    Descriptor descriptor;
    std::string path;  // leads to the held file
    struct stat status {};
};

HeldFile hold(const std::string& path) {
    HeldFile file{Descriptor(::open(systemPath(path), O_PATH | O_NOFOLLOW | O_CLOEXEC)), {}, {}};
    if (!file.descriptor.isOpen() || ::fstat(file.descriptor.number(), &file.status) != 0)
        throwSystemError(path);
    file.path = file.descriptor.pinnedPath();
    return file;
}

/// The access list; made from the mode where the file has no other.
List accessList(const HeldFile& file, const std::string& path) {
    List list(S_ISLNK(file.status.st_mode) ? nullptr : ::acl_get_file(file.path.c_str(), ACL_TYPE_ACCESS));
    if (list == nullptr && !S_ISLNK(file.status.st_mode) && errno != ENOTSUP) throwSystemError(path);
    if (list == nullptr) list.reset(::acl_from_mode(file.status.st_mode));
    if (list == nullptr) throwSystemError(path);
    return list;
}

/// What a folder hands down to new files in it; null for anything but a folder.
List defaultList(const HeldFile& file, const std::string& path) {
    if (!S_ISDIR(file.status.st_mode)) return nullptr;
    List list(::acl_get_file(file.path.c_str(), ACL_TYPE_DEFAULT));
    if (list == nullptr && errno != ENOTSUP) throwSystemError(path);
    return list;
}

struct ClassRow {
    acl_tag_t tag;
    const char* name;
};

constexpr std::array kClasses = {
    ClassRow{ACL_USER_OBJ, "owner"},    ClassRow{ACL_USER, "user"}, ClassRow{ACL_GROUP_OBJ, "group"},
    ClassRow{ACL_GROUP, "named group"}, ClassRow{ACL_MASK, "mask"}, ClassRow{ACL_OTHER, "other"},
};

/// An entry as the system has it.
struct Entry {
    acl_tag_t tag = ACL_UNDEFINED_TAG;
    mode_t rights = 0;            // S_IROTH, S_IWOTH, S_IXOTH
    std::optional<id_t> id = {};  // of a named one
};

bool isNamed(acl_tag_t tag) {
    return tag == ACL_USER || tag == ACL_GROUP;
}

Entry entryOf(acl_entry_t from) {
    Entry entry;
    ::acl_get_tag_type(from, &entry.tag);
    acl_permset_t set = nullptr;
    ::acl_get_permset(from, &set);
    const auto bit = [set](acl_perm_t right, mode_t mode) {
        return ::acl_get_perm(set, right) == 1 ? mode : 0U;
    };
    entry.rights = bit(ACL_READ, S_IROTH) | bit(ACL_WRITE, S_IWOTH) | bit(ACL_EXECUTE, S_IXOTH);
    if (!isNamed(entry.tag)) return entry;
    const std::unique_ptr<void, decltype(&::acl_free)> number(::acl_get_qualifier(from), &::acl_free);
    if (number != nullptr) entry.id = *static_cast<const id_t*>(number.get());
    return entry;
}

/// Tells the entries of one list in the product's terms.
class EntryReader {
  public:
    EntryReader(const struct stat& status, AccountNames& names, bool isDefault)
        : status_(status), names_(names), isDefault_(isDefault) {}

    AccessEntry tell(const Entry& entry) {
        AccessEntry told;
        const auto row = std::find_if(kClasses.begin(), kClasses.end(),
                                      [&](const ClassRow& each) { return each.tag == entry.tag; });
        told.domain = row == kClasses.end() ? "unknown" : row->name;
        told.account = told.domain;
        tellAccount(entry, told);
        told.rights = rightsOf(entry);
        if (isDefault_) told.domain.insert(0, "default ");
        return told;
    }

  private:
    void tellAccount(const Entry& entry, AccessEntry& told) {
        if (isNamed(entry.tag) && !entry.id) {
            told.state = AccountState::Failed;
            told.account.clear();
            told.domain.clear();
            return;
        }
        if (isDefault_ && !entry.id) return;  // speaks of whoever will own the new file
        if (entry.tag == ACL_USER_OBJ || entry.tag == ACL_USER) {
            const uid_t id = entry.id.value_or(status_.st_uid);
            told.account = names_.user(id);
            told.isAdministrators = id == 0;
        }
        if (entry.tag == ACL_GROUP_OBJ || entry.tag == ACL_GROUP)
            told.account = names_.group(entry.id.value_or(status_.st_gid));
    }

    std::uint32_t rightsOf(const Entry& entry) const {
        const auto may = [&](mode_t right) { return (entry.rights & right) != 0; };
        std::uint32_t rights = 0;
        if (may(S_IROTH)) rights |= right::kRead;
        if (may(S_IWOTH)) rights |= right::kWrite | (S_ISDIR(status_.st_mode) ? right::kDeleteBelow : 0U);
        if (may(S_IXOTH)) rights |= right::kExecute;
        if (entry.tag == ACL_USER_OBJ)
            rights |= entry.rights == S_IRWXO ? right::kFullControl : right::kChangeList;
        return isDefault_ ? rights : rights | modeBit(entry.tag);
    }

    std::uint32_t modeBit(acl_tag_t tag) const {
        const auto bit = [this](mode_t mode, std::uint32_t right) {
            return (status_.st_mode & mode) != 0 ? right : 0U;
        };
        switch (tag) {
            case ACL_USER_OBJ:
                return bit(S_ISUID, access_right::kSetUserId);
            case ACL_GROUP_OBJ:
                return bit(S_ISGID, access_right::kSetGroupId);
            case ACL_OTHER:
                return bit(S_ISVTX, access_right::kSticky);
            default:
                return 0;
        }
    }

    const struct stat& status_;
    AccountNames& names_;
    bool isDefault_;
};

/// Whether a file has a list of its own of one kind beside its mode.
bool hasList(const std::string& path, const char* attribute) {
    const bool isThere = ::lgetxattr(systemPath(path), attribute, nullptr, 0) >= 0;
    if (!isThere && errno != ENODATA && errno != ENOTSUP) throwSystemError(path);
    return isThere;
}

/// What the mode alone says, as of a file without a list.
std::vector<AccessEntry> tellMode(const struct stat& status, AccountNames& names) {
    EntryReader reader(status, names, false);
    return {reader.tell({ACL_USER_OBJ, status.st_mode >> 6 & S_IRWXO}),
            reader.tell({ACL_GROUP_OBJ, status.st_mode >> 3 & S_IRWXO}),
            reader.tell({ACL_OTHER, status.st_mode & S_IRWXO})};
}

std::vector<acl_entry_t> entriesOf(acl_t list) {
    std::vector<acl_entry_t> entries;
    acl_entry_t entry = nullptr;
    for (int which = ACL_FIRST_ENTRY; list != nullptr && ::acl_get_entry(list, which, &entry) == 1;
         which = ACL_NEXT_ENTRY) {
        entries.push_back(entry);
    }
    return entries;
}

/// Takes an entry out, or its rights where every list has such an entry; false where nothing changed.
bool takeOut(acl_t list, acl_entry_t entry) {
    const Entry present = entryOf(entry);
    if (isNamed(present.tag)) return ::acl_delete_entry(list, entry) == 0;
    if (present.tag == ACL_USER_OBJ || present.rights == 0) return false;
    acl_permset_t set = nullptr;
    ::acl_get_permset(entry, &set);
    return ::acl_clear_perms(set) == 0;
}

/// Sets a list; where the file system knows none, the mode that means the same.
void setList(const HeldFile& file, acl_type_t type, acl_t list, const std::string& path) {
    if (::acl_set_file(file.path.c_str(), type, list) == 0) return;
    mode_t mode = 0;
    const mode_t kept = file.status.st_mode & (S_ISUID | S_ISGID | S_ISVTX);
    if (errno == ENOTSUP && type == ACL_TYPE_ACCESS && ::acl_equiv_mode(list, &mode) == 0 &&
        ::chmod(file.path.c_str(), mode | kept) == 0) {
        return;
    }
    throwSystemError(path);
}

}  // namespace

std::optional<std::vector<AccessEntry>> PosixAccessLists::read(const std::string& path) {
    // Most files have no list, and two questions are enough for them; every file of a machine comes here.
    struct stat status {};
    if (::lstat(systemPath(path), &status) != 0) throwSystemError(path);
    const bool hasMore =
        !S_ISLNK(status.st_mode) &&
        (hasList(path, kAccessAttribute) || (S_ISDIR(status.st_mode) && hasList(path, kDefaultAttribute)));
    if (!hasMore) return tellMode(status, names_);

    const HeldFile file = hold(path);
    std::vector<AccessEntry> entries;
    const auto append = [&](const List& list, bool isDefault) {
        EntryReader reader(file.status, names_, isDefault);
        for (const acl_entry_t entry : entriesOf(list.get()))
            entries.push_back(reader.tell(entryOf(entry)));
    };
    append(accessList(file, path), false);
    append(defaultList(file, path), true);
    return entries;
}

std::size_t PosixAccessLists::removeEntries(const std::string& path,
                                            const std::function<bool(const AccessEntry&)>& isUnwanted) {
    const HeldFile file = hold(path);
    if (S_ISLNK(file.status.st_mode)) throw base::FileFailure(base::Cause::InvalidFile, 0, path);
    std::size_t total = 0;
    for (const acl_type_t type : {acl_type_t{ACL_TYPE_DEFAULT}, acl_type_t{ACL_TYPE_ACCESS}}) {
        const bool isDefault = type == ACL_TYPE_DEFAULT;
        const List list = isDefault ? defaultList(file, path) : accessList(file, path);
        EntryReader reader(file.status, names_, isDefault);
        std::vector<acl_entry_t> unwanted = entriesOf(list.get());
        std::erase_if(unwanted, [&](acl_entry_t entry) { return !isUnwanted(reader.tell(entryOf(entry))); });
        const auto count = std::count_if(unwanted.begin(), unwanted.end(),
                                         [&](acl_entry_t entry) { return takeOut(list.get(), entry); });
        if (count > 0) setList(file, type, list.get(), path);
        total += static_cast<std::size_t>(count);
    }
    return total;
}

}  // namespace corvalence::platform::linux_system
