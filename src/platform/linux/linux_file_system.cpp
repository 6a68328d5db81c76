#include "platform/linux/linux_file_system.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <string_view>

#include "platform/linux/descriptor.h"
#include "platform/linux/linux_file.h"
#include "platform/linux/pseudo_file_system.h"
#include "platform/linux/status_query.h"
#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

constexpr mode_t kOwnerOnlyFile = S_IRUSR | S_IWUSR;
constexpr mode_t kOwnerOnlyFolder = S_IRWXU;

Descriptor openAt(const std::string& path, int flags, mode_t mode = 0) {
    int number = -1;
    do {
        number = ::open(systemPath(path), flags | O_CLOEXEC, mode);
    } while (number < 0 && errno == EINTR);
    if (number < 0) throwSystemError(path);
    return Descriptor(number);
}

[[noreturn]] void refuseKind(mode_t mode, const std::string& path) {
    throw base::FileFailure(base::Cause::InvalidFile, S_ISDIR(mode) ? EISDIR : 0, path);
}

/// Opens a regular file and nothing else. The look before the open is what counts for a device, which may act
/// on being opened; the look behind it closes the gap in which a name is swapped.
Descriptor openRegular(const std::string& path, int flags, std::uint64_t* size = nullptr) {
    struct stat data {};
    if (::stat(systemPath(path), &data) != 0) throwSystemError(path);
    if (!S_ISREG(data.st_mode)) refuseKind(data.st_mode, path);
    Descriptor descriptor = openAt(path, flags | O_NONBLOCK | O_NOCTTY);
    if (::fstat(descriptor.number(), &data) != 0) throwSystemError(path);
    if (!S_ISREG(data.st_mode)) refuseKind(data.st_mode, path);
    if (size != nullptr) *size = static_cast<std::uint64_t>(data.st_size);
    return descriptor;
}

void lockAlone(const Descriptor& descriptor, const std::string& path) {
    while (::flock(descriptor.number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) throw base::FileFailure(base::Cause::SharingViolation, errno, path);
        if (errno != EINTR) throwSystemError(path);
    }
}

/// A folder open for bringing its entries to the device, taken before they change, so that running out of
/// descriptors is told while nothing has happened yet.
class FolderSync {
  public:
    explicit FolderSync(const std::string& folder) {
        descriptor_ = Descriptor(::open(systemPath(folder), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        // A folder that the caller may write but not read cannot be opened; everything is synchronised then.
        if (!descriptor_.isOpen() && errno != EACCES) throwSystemError(folder);
    }

    /// The change itself is done and everybody sees it: told as a failure, its caller would undo what stands,
    /// or wipe what has become a user's file. A device that does not take it says so at the next flush of
    /// data. Some file systems write folders through and know no such call.
    void bringToDevice() noexcept {
        if (!descriptor_.isOpen() || ::fsync(descriptor_.number()) != 0) ::sync();
    }

  private:
    Descriptor descriptor_;
};

/// For file systems without an exclusive rename: a second name, which is never taken over, then the first
/// goes.
bool moveByLink(const std::string& from, const std::string& to) {
    if (::link(from.c_str(), to.c_str()) != 0) {
        if (errno == EEXIST) return false;
        throwSystemError(to);
    }
    if (::unlink(from.c_str()) != 0) {
        const int error = errno;
        ::unlink(to.c_str());
        throw failureOf(error, from);
    }
    return true;
}

/// Makes one folder, open to its owner alone. Returns 0 or the error number.
int makeFolder(const std::string& path) {
    if (::mkdir(systemPath(path), kOwnerOnlyFolder) != 0) return errno;
    // The process's mask may have taken away even the owner's rights.
    return ::chmod(path.c_str(), kOwnerOnlyFolder) == 0 ? 0 : errno;
}

FileKind kindOf(unsigned char entryType) noexcept {
    switch (entryType) {
        case DT_REG:
            return FileKind::Regular;
        case DT_LNK:
            return FileKind::Link;
        default:
            return FileKind::Other;
    }
}

struct CloseFolder {
    void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};

}  // namespace

std::unique_ptr<File> LinuxFileSystem::openShared(const std::string& path) {
    std::uint64_t size = 0;
    Descriptor descriptor = openRegular(path, O_RDONLY, &size);
    return std::make_unique<LinuxFile>(std::move(descriptor), path, size);
}

std::unique_ptr<File> LinuxFileSystem::openExclusive(const std::string& path) {
    Descriptor descriptor = openRegular(path, O_RDWR);
    lockAlone(descriptor, path);
    // Whoever held the file until now may have put another in its place meanwhile.
    struct stat held {};
    struct stat named {};
    if (::fstat(descriptor.number(), &held) != 0 || ::stat(path.c_str(), &named) != 0) throwSystemError(path);
    if (held.st_dev != named.st_dev || held.st_ino != named.st_ino) {
        throw base::FileFailure(base::Cause::SharingViolation, EWOULDBLOCK, path);
    }
    return std::make_unique<LinuxFile>(std::move(descriptor), path);
}

std::unique_ptr<File> LinuxFileSystem::createNew(const std::string& path) {
    Descriptor descriptor = openAt(path, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_NOCTTY, kOwnerOnlyFile);
    try {
        if (::fchmod(descriptor.number(), kOwnerOnlyFile) != 0) throwSystemError(path);
        lockAlone(descriptor, path);
    } catch (const base::FileFailure&) {
        ::unlink(path.c_str());
        throw;
    }
    return std::make_unique<LinuxFile>(std::move(descriptor), path);
}

std::optional<FileStatus> LinuxFileSystem::status(const std::string& path, Follow follow) {
    FileStatus result;
    const int flags = follow == Follow::No ? AT_SYMLINK_NOFOLLOW : 0;
    const int error = queryStatus(AT_FDCWD, systemPath(path), flags, lastName(path), result);
    if (error == ENOENT || error == ENOTDIR) return std::nullopt;
    if (error != 0) throw failureOf(error, path);
    return result;
}

std::vector<FolderEntry> LinuxFileSystem::list(const std::string& folder, Detail detail) {
    Descriptor descriptor = openAt(folder, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    // The stream closes the descriptor that it is given, so it gets one of its own.
    const int streamDescriptor = ::fcntl(descriptor.number(), F_DUPFD_CLOEXEC, 0);
    if (streamDescriptor < 0) throwSystemError(folder);
    const std::unique_ptr<DIR, CloseFolder> stream(::fdopendir(streamDescriptor));
    if (stream == nullptr) throwSystemError(folder);

    std::vector<FolderEntry> entries;
    for (;;) {
        errno = 0;
        const dirent* found = ::readdir(stream.get());
        if (found == nullptr) break;
        const std::string_view name = found->d_name;
        if (name == "." || name == "..") continue;
        FolderEntry entry{std::string(name), {}};
        if (detail == Detail::Folders && found->d_type != DT_DIR && found->d_type != DT_UNKNOWN) {
            entry.status.kind = kindOf(found->d_type);
            entries.push_back(std::move(entry));
            continue;
        }
        const int error =
            queryStatus(descriptor.number(), found->d_name, AT_SYMLINK_NOFOLLOW, name, entry.status);
        if (error == ENOENT) continue;
        if (error != 0) entry.fault = failureOf(error, folder).cause();
        entries.push_back(std::move(entry));
    }
    if (errno != 0) throwSystemError(folder);
    std::sort(entries.begin(), entries.end(),
              [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
    return entries;
}

bool LinuxFileSystem::isPseudo(const std::string& folder) {
    return isPseudoFileSystem(folder);
}

void LinuxFileSystem::rename(const std::string& from, const std::string& to) {
    FolderSync folder(folderOf(to));
    if (::rename(systemPath(from), systemPath(to)) != 0) throwSystemError(from);
    folder.bringToDevice();
}

bool LinuxFileSystem::renameNew(const std::string& from, const std::string& to) {
    FolderSync folder(folderOf(to));
    if (::renameat2(AT_FDCWD, systemPath(from), AT_FDCWD, systemPath(to), RENAME_NOREPLACE) != 0) {
        if (errno == EEXIST) return false;
        if (errno != EINVAL && errno != ENOSYS) throwSystemError(from);
        if (!moveByLink(from, to)) return false;
    }
    folder.bringToDevice();
    return true;
}

bool LinuxFileSystem::linkNew(const std::string& from, const std::string& to) {
    FolderSync folder(folderOf(to));
    if (::link(systemPath(from), systemPath(to)) != 0) {
        if (errno == EEXIST) return false;
        throwSystemError(from);
    }
    folder.bringToDevice();
    return true;
}

void LinuxFileSystem::remove(const std::string& path) {
    if (::unlink(systemPath(path)) != 0) throwSystemError(path);
}

void LinuxFileSystem::createFolder(const std::string& path) {
    std::string folder = path;
    while (folder.size() > 1 && folder.back() == '/')
        folder.pop_back();
    int error = makeFolder(folder);
    if (error == ENOENT && folder.find('/', 1) != std::string::npos) {
        createFolder(folderOf(folder));
        error = makeFolder(folder);
    }
    if (error == 0) {
        FolderSync(folderOf(folder)).bringToDevice();
        return;
    }
    // Some systems refuse before they see that the folder is there.
    struct stat data {};
    if (::stat(folder.c_str(), &data) != 0) throw failureOf(error, path);
    if (!S_ISDIR(data.st_mode)) throw failureOf(ENOTDIR, path);
}

std::size_t LinuxFileSystem::nameLimit() const noexcept {
    return NAME_MAX;
}

bool LinuxFileSystem::isNameTaken(const base::FileFailure& failure) const noexcept {
    return failure.systemError() == EEXIST;
}

bool LinuxFileSystem::isOtherVolume(const base::FileFailure& failure) const noexcept {
    return failure.systemError() == EXDEV;
}

}  // namespace corvalence::platform::linux_system
