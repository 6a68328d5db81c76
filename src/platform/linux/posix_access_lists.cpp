#include "platform/linux/posix_access_lists.h"

#include <acl/libacl.h>
#include <fcntl.h>
#include <sys/acl.h>
#include <sys/stat.h>

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

/// Goes over the entries of one list and tells each in the product's terms.
class EntryReader {
  public:
    EntryReader(const struct stat& status, AccountNames& names, bool isDefault)
        : status_(status), names_(names), isDefault_(isDefault) {}

    AccessEntry tell(acl_entry_t entry) {
        acl_tag_t tag = ACL_UNDEFINED_TAG;
        ::acl_get_tag_type(entry, &tag);
        AccessEntry told;
        const auto row = std::find_if(kClasses.begin(), kClasses.end(),
                                      [tag](const ClassRow& each) { return each.tag == tag; });
        told.domain = row == kClasses.end() ? "unknown" : row->name;
        told.account = told.domain;
        tellAccount(entry, tag, told);
        told.rights = rightsOf(entry, tag);
        if (isDefault_) told.domain.insert(0, "default ");
        return told;
    }

  private:
    void tellAccount(acl_entry_t entry, acl_tag_t tag, AccessEntry& told) {
        id_t id = tag == ACL_USER_OBJ ? status_.st_uid : status_.st_gid;
        if (tag == ACL_USER || tag == ACL_GROUP) {
            const std::unique_ptr<void, decltype(&::acl_free)> number(::acl_get_qualifier(entry),
                                                                      &::acl_free);
            if (number == nullptr) {
                told.state = AccountState::Failed;
                told.account.clear();
                told.domain.clear();
                return;
            }
            id = *static_cast<const id_t*>(number.get());
        } else if (isDefault_) {
            return;  // speaks of whoever will own the new file
        }
        if (tag == ACL_USER_OBJ || tag == ACL_USER) {
            told.account = names_.user(id);
            told.isAdministrators = id == 0;
        }
        if (tag == ACL_GROUP_OBJ || tag == ACL_GROUP) told.account = names_.group(id);
    }

    std::uint32_t rightsOf(acl_entry_t entry, acl_tag_t tag) const {
        acl_permset_t set = nullptr;
        ::acl_get_permset(entry, &set);
        const auto may = [set](acl_perm_t right) { return ::acl_get_perm(set, right) == 1; };
        std::uint32_t rights = 0;
        if (may(ACL_READ)) rights |= right::kRead;
        if (may(ACL_WRITE)) rights |= right::kWrite | (S_ISDIR(status_.st_mode) ? right::kDeleteBelow : 0U);
        if (may(ACL_EXECUTE)) rights |= right::kExecute;
        if (tag == ACL_USER_OBJ) {
            const bool hasAll = may(ACL_READ) && may(ACL_WRITE) && may(ACL_EXECUTE);
            rights |= hasAll ? right::kFullControl : right::kChangeList;
        }
        return isDefault_ ? rights : rights | modeBit(tag);
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

std::vector<acl_entry_t> entriesOf(acl_t list) {
    std::vector<acl_entry_t> entries;
    acl_entry_t entry = nullptr;
    for (int which = ACL_FIRST_ENTRY; list != nullptr && ::acl_get_entry(list, which, &entry) == 1;
         which = ACL_NEXT_ENTRY) {
        entries.push_back(entry);
    }
    return entries;
}

bool hasRights(acl_entry_t entry) {
    acl_permset_t set = nullptr;
    ::acl_get_permset(entry, &set);
    return ::acl_get_perm(set, ACL_READ) == 1 || ::acl_get_perm(set, ACL_WRITE) == 1 ||
           ::acl_get_perm(set, ACL_EXECUTE) == 1;
}

/// Takes an entry out, or its rights where every list has such an entry; false where nothing changed.
bool takeOut(acl_t list, acl_entry_t entry) {
    acl_tag_t tag = ACL_UNDEFINED_TAG;
    ::acl_get_tag_type(entry, &tag);
    if (tag == ACL_USER || tag == ACL_GROUP) return ::acl_delete_entry(list, entry) == 0;
    if (tag == ACL_USER_OBJ || !hasRights(entry)) return false;
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
    const HeldFile file = hold(path);
    std::vector<AccessEntry> entries;
    const auto append = [&](const List& list, bool isDefault) {
        EntryReader reader(file.status, names_, isDefault);
        for (const acl_entry_t entry : entriesOf(list.get()))
            entries.push_back(reader.tell(entry));
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
        std::erase_if(unwanted, [&](acl_entry_t entry) { return !isUnwanted(reader.tell(entry)); });
        const auto count = std::count_if(unwanted.begin(), unwanted.end(),
                                         [&](acl_entry_t entry) { return takeOut(list.get(), entry); });
        if (count > 0) setList(file, type, list.get(), path);
        total += static_cast<std::size_t>(count);
    }
    return total;
}

}  // namespace corvalence::platform::linux_system
