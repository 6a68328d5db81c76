#include "platform/windows/windows_access_lists.h"

#include <windows.h>

#include <aclapi.h>

#include <cstddef>

#include "platform/windows/handle.h"
#include "platform/windows/system_error.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

/// The list of a file and the descriptor in which it lies; null for a file without a list.
struct FileList {
    LocalMemory<PSECURITY_DESCRIPTOR> descriptor;
    PACL entries = nullptr;
};

void readList(const std::string& path, FileList& list) {
    const DWORD error =
        ::GetNamedSecurityInfoW(systemPath(path).c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                nullptr, &list.entries, nullptr, list.descriptor.out());
    if (error != ERROR_SUCCESS) throw failureOf(error, path);
}

DWORD entryCount(PACL list, const std::string& path) {
    ACL_SIZE_INFORMATION size{};
    if (::GetAclInformation(list, &size, sizeof size, AclSizeInformation) == FALSE) throwSystemError(path);
    return size.AceCount;
}

void* entryAt(PACL list, DWORD index, const std::string& path) {
    void* entry = nullptr;
    if (::GetAce(list, index, &entry) == FALSE) throwSystemError(path);
    return entry;
}

bool isObjectEntry(BYTE type) {
    return type == ACCESS_ALLOWED_OBJECT_ACE_TYPE || type == ACCESS_DENIED_OBJECT_ACE_TYPE ||
           type == ACCESS_ALLOWED_CALLBACK_OBJECT_ACE_TYPE || type == ACCESS_DENIED_CALLBACK_OBJECT_ACE_TYPE;
}

/// The identifier of an entry; null where it holds none that is valid.
PSID identityOf(void* entry) {
    auto* const header = static_cast<ACE_HEADER*>(entry);
    std::size_t at = offsetof(ACCESS_ALLOWED_ACE, SidStart);
    if (isObjectEntry(header->AceType)) {
        const DWORD flags = static_cast<ACCESS_ALLOWED_OBJECT_ACE*>(entry)->Flags;
        at = offsetof(ACCESS_ALLOWED_OBJECT_ACE, ObjectType);
        if ((flags & ACE_OBJECT_TYPE_PRESENT) != 0) at += sizeof(GUID);
        if ((flags & ACE_INHERITED_OBJECT_TYPE_PRESENT) != 0) at += sizeof(GUID);
    }
    if (header->AceSize < at + offsetof(SID, SubAuthority)) return nullptr;
    const PSID sid = static_cast<BYTE*>(entry) + at;
    const bool isWhole = header->AceSize >= at + ::GetSidLengthRequired(*::GetSidSubAuthorityCount(sid));
    return isWhole && ::IsValidSid(sid) != FALSE ? sid : nullptr;
}

std::uint32_t rightsOf(void* entry) {
    GENERIC_MAPPING mapping{FILE_GENERIC_READ, FILE_GENERIC_WRITE, FILE_GENERIC_EXECUTE, FILE_ALL_ACCESS};
    // The mask stands at the same place in entries of every type.
    DWORD mask = static_cast<ACCESS_ALLOWED_ACE*>(entry)->Mask;
    ::MapGenericMask(&mask, &mapping);
    return mask & ~DWORD{SYNCHRONIZE};
}

}  // namespace

AccessEntry WindowsAccessLists::tell(void* entry) {
    AccessEntry told;
    told.rights = rightsOf(entry);
    const PSID sid = identityOf(entry);
    if (sid == nullptr) {
        told.state = AccountState::Failed;
        return told;
    }
    const Account& account = accounts_.of(sid);
    told.state = account.state;
    told.account = account.name;
    told.domain = account.domain;
    told.isAdministrators = ::IsWellKnownSid(sid, WinBuiltinAdministratorsSid) != FALSE;
    return told;
}

std::optional<std::vector<AccessEntry>> WindowsAccessLists::read(const std::string& path) {
    FileList list;
    readList(path, list);
    if (list.entries == nullptr) return std::nullopt;
    std::vector<AccessEntry> entries;
    const DWORD count = entryCount(list.entries, path);
    for (DWORD index = 0; index < count; ++index)
        entries.push_back(tell(entryAt(list.entries, index, path)));
    return entries;
}

std::size_t WindowsAccessLists::removeEntries(const std::string& path,
                                              const std::function<bool(const AccessEntry&)>& isUnwanted) {
    FileList list;
    readList(path, list);
    if (list.entries == nullptr) return 0;
    std::size_t removed = 0;
    for (DWORD index = 0; index < entryCount(list.entries, path);) {
        void* const entry = entryAt(list.entries, index, path);
        if (isUnwanted(tell(entry))) {
            // The entries behind move up.
            if (::DeleteAce(list.entries, index) == FALSE) throwSystemError(path);
            ++removed;
            continue;
        }
        // An entry that says it was handed down would not be taken as one of the file's own.
        auto* const header = static_cast<ACE_HEADER*>(entry);
        header->AceFlags = static_cast<BYTE>(header->AceFlags & ~INHERITED_ACE);
        ++index;
    }
    if (removed == 0) return 0;
    std::wstring name = systemPath(path);
    const DWORD error = ::SetNamedSecurityInfoW(
        name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr,
        nullptr, list.entries, nullptr);
    if (error != ERROR_SUCCESS) throw failureOf(error, path);
    return removed;
}

}  // namespace corvalence::platform::windows_system
