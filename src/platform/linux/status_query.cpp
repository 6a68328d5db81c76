#include "platform/linux/status_query.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>

namespace corvalence::platform::linux_system {

namespace {

FileKind kindOf(std::uint16_t mode) noexcept {
    if (S_ISREG(mode)) return FileKind::Regular;
    if (S_ISDIR(mode)) return FileKind::Folder;
    return S_ISLNK(mode) ? FileKind::Link : FileKind::Other;
}

std::uint32_t attributesOf(const struct statx& data, FileKind kind, std::string_view name) noexcept {
    std::uint32_t word = 0;
    if (kind == FileKind::Regular) word |= attribute::kArchive;
    if (kind == FileKind::Folder) word |= attribute::kFolder;
    if ((data.stx_mode & S_IWUSR) == 0) word |= attribute::kReadOnly;
    if (name.substr(0, 1) == ".") word |= attribute::kHidden;
    if ((data.stx_attributes & STATX_ATTR_COMPRESSED) != 0) word |= attribute::kCompressed;
    if ((data.stx_attributes & STATX_ATTR_ENCRYPTED) != 0) word |= attribute::kEncrypted;
    return word;
}

base::FileTime timeOf(const struct statx_timestamp& time) noexcept {
    return base::FileTime::fromUnix(time.tv_sec, time.tv_nsec);
}

}  // namespace

int queryStatus(int folder, const char* name, int flags, std::string_view shownName, FileStatus& status) {
    struct statx data {};
    if (::statx(folder, name, flags | AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_BTIME, &data) != 0)
        return errno;
    const bool hasBirth = (data.stx_mask & STATX_BTIME) != 0;
    status.kind = kindOf(data.stx_mode);
    status.attributes = attributesOf(data, status.kind, shownName);
    status.size = data.stx_size;
    status.written = timeOf(data.stx_mtime);
    status.created = timeOf(hasBirth ? data.stx_btime : data.stx_ctime);
    status.identity = {::makedev(data.stx_dev_major, data.stx_dev_minor), data.stx_ino,
                       hasBirth ? status.created.ticks : 0};
    return 0;
}

std::string_view lastName(std::string_view path) noexcept {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace corvalence::platform::linux_system
