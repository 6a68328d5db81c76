#include "platform/linux/system_error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>

namespace corvalence::platform::linux_system {

namespace {

using base::Cause;

struct Row {
    int error;
    Cause cause;
};

constexpr std::array kCauses = {
    Row{ENOENT, Cause::FileNotFound},
    Row{ENOTDIR, Cause::BadPath},
    Row{ENAMETOOLONG, Cause::BadPath},
    Row{ELOOP, Cause::BadPath},
    Row{EILSEQ, Cause::BadPath},
    Row{EMFILE, Cause::TooManyOpenFiles},
    Row{ENFILE, Cause::TooManyOpenFiles},
    Row{EACCES, Cause::AccessDenied},
    Row{EPERM, Cause::AccessDenied},
    Row{EROFS, Cause::AccessDenied},
    Row{ETXTBSY, Cause::AccessDenied},
    Row{EEXIST, Cause::AccessDenied},
    Row{EISDIR, Cause::InvalidFile},
    Row{EMLINK, Cause::DirectoryFull},
    Row{ESPIPE, Cause::BadSeek},
    Row{ENOMEDIUM, Cause::NoMedia},
    Row{EWOULDBLOCK, Cause::LockViolation},
    Row{EDEADLK, Cause::LockViolation},
    Row{ENOSPC, Cause::DiskFull},
    Row{EDQUOT, Cause::DiskFull},
    Row{EFBIG, Cause::DiskFull},
};

}  // namespace

base::FileFailure failureOf(int error, const std::string& path) {
    const auto row =
        std::find_if(kCauses.begin(), kCauses.end(), [error](const Row& r) { return r.error == error; });
    return {row == kCauses.end() ? Cause::Generic : row->cause, error, path};
}

void throwSystemError(const std::string& path) {
    throw failureOf(errno, path);
}

const char* systemPath(const std::string& path) {
    if (path.find('\0') != std::string::npos) throw base::FileFailure(Cause::BadPath, 0, path);
    return path.c_str();
}

}  // namespace corvalence::platform::linux_system
