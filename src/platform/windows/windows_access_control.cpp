#include "platform/windows/windows_access_control.h"

#include <windows.h>

#include <aclapi.h>

#include "platform/windows/handle.h"
#include "platform/windows/pinned_path.h"
#include "platform/windows/status_query.h"
#include "platform/windows/system_error.h"
#include "platform/windows/token.h"
#include "platform/windows/wide.h"
#include "platform/windows/windows_file.h"

namespace corvalence::platform::windows_system {

namespace {

constexpr DWORD kSettable = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                            FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

const WindowsFile& windowsFile(File& file) {
    return dynamic_cast<WindowsFile&>(file);
}

constexpr SECURITY_INFORMATION kParts =
    OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;

/// Owner, group and access list of a file.
struct Protection {
    PSID owner = nullptr;
    PSID group = nullptr;
    LocalMemory<PSECURITY_DESCRIPTOR> descriptor;
};

void readProtection(HANDLE handle, const std::string& path, Protection& protection) {
    const DWORD error = ::GetSecurityInfo(handle, SE_FILE_OBJECT, kParts, &protection.owner,
                                          &protection.group, nullptr, nullptr, protection.descriptor.out());
    if (error != ERROR_SUCCESS) throw failureOf(error, path);
}

/// Lets a list that was handed down by the folder above count as one when it is given to another file.
void keepInheritance(PSECURITY_DESCRIPTOR descriptor) {
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    if (::GetSecurityDescriptorControl(descriptor, &control, &revision) &&
        (control & SE_DACL_AUTO_INHERITED) != 0) {
        ::SetSecurityDescriptorControl(descriptor, SE_DACL_AUTO_INHERIT_REQ, SE_DACL_AUTO_INHERIT_REQ);
    }
}

}  // namespace

void WindowsAccessControl::copyProtection(const std::string& from, File& to) {
    const WindowsFile& target = windowsFile(to);
    const Handle source(::CreateFileW(systemPath(from).c_str(), READ_CONTROL | FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!source.isOpen()) throwSystemError(from);
    // A link that took the file's place since it was looked at must not lend its owner and rights.
    if (statusOf(source.get(), from).kind != FileKind::Regular) {
        throw base::FileFailure(base::Cause::InvalidFile, 0, from);
    }
    Protection wanted;
    Protection present;
    readProtection(source.get(), from, wanted);
    readProtection(target.handle(), target.path(), present);

    // Administrators may give a file to another owner by this privilege alone.
    const Privilege restore(SE_RESTORE_NAME);
    SECURITY_INFORMATION parts = DACL_SECURITY_INFORMATION;
    if (!::EqualSid(wanted.owner, present.owner)) parts |= OWNER_SECURITY_INFORMATION;
    if (!::EqualSid(wanted.group, present.group)) parts |= GROUP_SECURITY_INFORMATION;
    keepInheritance(wanted.descriptor.get());
    // Exactly this list: other calls would mix in what the folder hands down.
    if (!::SetKernelObjectSecurity(target.handle(), parts, wanted.descriptor.get()))
        throwSystemError(target.path());
}

void WindowsAccessControl::setAttributes(File& file, std::uint32_t attributes) {
    const WindowsFile& target = windowsFile(file);
    FILE_BASIC_INFO info{};  // times of zero stay as they are
    info.FileAttributes = attributes & kSettable;
    if (info.FileAttributes == 0) info.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    if (!::SetFileInformationByHandle(target.handle(), FileBasicInfo, &info, sizeof(info))) {
        throwSystemError(target.path());
    }
}

std::unique_ptr<PinnedFolder> WindowsAccessControl::pinFolderOf(const std::string& file, std::string& name) {
    return PathWalk(file).finish(name);
}

}  // namespace corvalence::platform::windows_system
