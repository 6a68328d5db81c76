#include "platform/windows/system_error.h"

#include <algorithm>
#include <array>

namespace corvalence::platform::windows_system {

namespace {

using base::Cause;

struct Row {
    DWORD error;
    Cause cause;
};

// Not in the headers that this is built with.
constexpr DWORD kStoppedOnSymlink = 681;
constexpr DWORD kDiskQuotaExceeded = 1295;

constexpr std::array kCauses = {
    Row{ERROR_FILE_NOT_FOUND, Cause::FileNotFound},
    Row{ERROR_PATH_NOT_FOUND, Cause::FileNotFound},
    Row{ERROR_BAD_NETPATH, Cause::FileNotFound},
    Row{ERROR_BAD_NET_NAME, Cause::FileNotFound},
    Row{ERROR_INVALID_DRIVE, Cause::BadPath},
    Row{ERROR_INVALID_NAME, Cause::BadPath},
    Row{ERROR_BAD_PATHNAME, Cause::BadPath},
    Row{ERROR_FILENAME_EXCED_RANGE, Cause::BadPath},
    Row{ERROR_BUFFER_OVERFLOW, Cause::BadPath},
    Row{ERROR_DIRECTORY, Cause::BadPath},
    Row{ERROR_CANT_RESOLVE_FILENAME, Cause::BadPath},
    Row{kStoppedOnSymlink, Cause::BadPath},
    Row{ERROR_TOO_MANY_OPEN_FILES, Cause::TooManyOpenFiles},
    Row{ERROR_ACCESS_DENIED, Cause::AccessDenied},
    Row{ERROR_WRITE_PROTECT, Cause::AccessDenied},
    Row{ERROR_NETWORK_ACCESS_DENIED, Cause::AccessDenied},
    Row{ERROR_PRIVILEGE_NOT_HELD, Cause::AccessDenied},
    Row{ERROR_INVALID_OWNER, Cause::AccessDenied},
    Row{ERROR_FILE_EXISTS, Cause::AccessDenied},
    Row{ERROR_ALREADY_EXISTS, Cause::AccessDenied},
    Row{ERROR_DELETE_PENDING, Cause::AccessDenied},
    Row{ERROR_USER_MAPPED_FILE, Cause::AccessDenied},
    Row{ERROR_INVALID_HANDLE, Cause::InvalidFile},
    Row{ERROR_CURRENT_DIRECTORY, Cause::RemoveCurrentDir},
    Row{ERROR_CANNOT_MAKE, Cause::DirectoryFull},
    Row{ERROR_TOO_MANY_LINKS, Cause::DirectoryFull},
    Row{ERROR_SEEK, Cause::BadSeek},
    Row{ERROR_NEGATIVE_SEEK, Cause::BadSeek},
    Row{ERROR_NOT_READY, Cause::NoMedia},
    Row{ERROR_NO_MEDIA_IN_DRIVE, Cause::NoMedia},
    Row{ERROR_SHARING_VIOLATION, Cause::SharingViolation},
    Row{ERROR_LOCK_VIOLATION, Cause::LockViolation},
    Row{ERROR_DISK_FULL, Cause::DiskFull},
    Row{ERROR_HANDLE_DISK_FULL, Cause::DiskFull},
    Row{kDiskQuotaExceeded, Cause::DiskFull},
    Row{ERROR_NOT_ENOUGH_QUOTA, Cause::DiskFull},
    Row{ERROR_FILE_TOO_LARGE, Cause::DiskFull},
    Row{ERROR_HANDLE_EOF, Cause::EndOfFile},
};

}  // namespace

base::FileFailure failureOf(DWORD error, const std::string& path) {
    const auto row =
        std::find_if(kCauses.begin(), kCauses.end(), [error](const Row& r) { return r.error == error; });
    return {row == kCauses.end() ? Cause::Generic : row->cause, static_cast<int>(error), path};
}

void throwSystemError(const std::string& path) {
    throw failureOf(::GetLastError(), path);
}

bool isMissing(DWORD error) noexcept {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_BAD_NETPATH ||
           error == ERROR_BAD_NET_NAME;
}

}  // namespace corvalence::platform::windows_system
