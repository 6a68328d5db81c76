#include "platform/linux/linux_volumes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string_view>

#include "platform/linux/descriptor.h"
#include "platform/linux/mount_table.h"
#include "platform/linux/pseudo_file_system.h"
#include "platform/linux/status_query.h"

namespace corvalence::platform::linux_system {

namespace {

struct TypeRow {
    std::string_view fileSystem;
    DriveType type;
};

constexpr std::array kTypes = {
    TypeRow{"nfs", DriveType::Remote},        TypeRow{"nfs4", DriveType::Remote},
    TypeRow{"cifs", DriveType::Remote},       TypeRow{"smb3", DriveType::Remote},
    TypeRow{"smbfs", DriveType::Remote},      TypeRow{"afs", DriveType::Remote},
    TypeRow{"ceph", DriveType::Remote},       TypeRow{"lustre", DriveType::Remote},
    TypeRow{"9p", DriveType::Remote},         TypeRow{"fuse.sshfs", DriveType::Remote},
    TypeRow{"fuse.davfs", DriveType::Remote}, TypeRow{"fuse.rclone", DriveType::Remote},
    TypeRow{"fuse.s3fs", DriveType::Remote},  TypeRow{"fuse.glusterfs", DriveType::Remote},
    TypeRow{"fuse.ceph", DriveType::Remote},  TypeRow{"fuse.curlftpfs", DriveType::Remote},
    TypeRow{"iso9660", DriveType::Optical},   TypeRow{"udf", DriveType::Optical},
};

/// Mounts that hold no files of their own though their type does not say so: places where another one comes
/// when it is asked for, and what shows the kernel's tables to containers.
constexpr std::array<std::string_view, 2> kWithoutFiles = {"autofs", "fuse.lxcfs"};

constexpr std::array<std::string_view, 2> kFat = {"msdos", "vfat"};

/// File systems whose files have neither owner nor mode of their own.
constexpr std::array<std::string_view, 4> kWithoutAccessLists = {"exfat", "fuseblk", "msdos", "vfat"};

template <std::size_t N>
bool isAmong(const std::array<std::string_view, N>& types, std::string_view type) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

/// The path with every link resolved, of the nearest part that exists.
std::string nearestExisting(std::string path) {
    for (;;) {
        const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
        if (real != nullptr) return real.get();
        const std::string above = folderOf(path);
        if (above == path || above == ".") return "/";
        path = above;
    }
}

bool isBelow(std::string_view path, std::string_view point) {
    if (point == "/") return true;
    return path.substr(0, point.size()) == point &&
           (path.size() == point.size() || path[point.size()] == '/');
}

/// "major:minor" of the device that is mounted. File systems over several devices show a number of their own,
/// so the source's number goes first.
std::string deviceOf(const Mount& mount) {
    struct stat data {};
    if (mount.source.rfind("/dev/", 0) == 0 && ::stat(mount.source.c_str(), &data) == 0 &&
        S_ISBLK(data.st_mode)) {
        return std::to_string(major(data.st_rdev)) + ":" + std::to_string(minor(data.st_rdev));
    }
    return mount.device;
}

bool isRemovable(const std::string& device) {
    // A partition has no such file; its disk, one folder up, does.
    for (const char* place : {"/removable", "/../removable"}) {
        std::ifstream file("/sys/dev/block/" + device + place);
        char flag = '0';
        if (file >> flag) return flag == '1';
    }
    return false;
}

bool holdsFiles(const Mount& mount) {
    return !isAmong(kWithoutFiles, mount.type) && !isPseudoFileSystem(mount.point);
}

/// The mount that is seen at its own point; the last of several on one folder covers the others.
const Mount* mountAt(const std::vector<Mount>& mounts, const std::string& point) {
    const auto mount =
        std::find_if(mounts.rbegin(), mounts.rend(), [&](const Mount& m) { return m.point == point; });
    return mount == mounts.rend() ? nullptr : &*mount;
}

/// Whether the mount is a folder that can be reached: not covered by another one on it or on the way to it.
bool isSeen(const Mount& mount) {
    struct statx data {};
    if (::statx(AT_FDCWD, mount.point.c_str(), AT_NO_AUTOMOUNT | AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC,
                STATX_TYPE | STATX_MNT_ID, &data) != 0 ||
        !S_ISDIR(data.stx_mode)) {
        return false;
    }
    return (data.stx_mask & STATX_MNT_ID) == 0 || data.stx_mnt_id == mount.id;
}

bool canBeListed(const std::string& folder) {
    return Descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC)).isOpen();
}

}  // namespace

std::string LinuxVolumes::rootOf(const std::string& path) {
    const std::string existing = nearestExisting(path);
    struct statx data {};
    const bool hasId = ::statx(AT_FDCWD, existing.c_str(), AT_NO_AUTOMOUNT, STATX_MNT_ID, &data) == 0 &&
                       (data.stx_mask & STATX_MNT_ID) != 0;
    std::string root = "/";
    for (const Mount& mount : readMounts()) {
        if (hasId && mount.id == data.stx_mnt_id) return mount.point;
        // Without ids the longest mount point on the way is the nearest guess.
        if (!hasId && mount.point.size() >= root.size() && isBelow(existing, mount.point)) root = mount.point;
    }
    return root;
}

DriveType LinuxVolumes::driveType(const std::string& root) {
    const std::vector<Mount> mounts = readMounts();
    const Mount* const mount = mountAt(mounts, root);
    if (mount == nullptr) return DriveType::Unknown;
    const auto row = std::find_if(kTypes.begin(), kTypes.end(),
                                  [&](const TypeRow& r) { return r.fileSystem == mount->type; });
    if (row != kTypes.end()) return row->type;
    return isRemovable(deviceOf(*mount)) ? DriveType::Removable : DriveType::Fixed;
}

bool LinuxVolumes::keepsAccessLists(const std::string& root) {
    const std::vector<Mount> mounts = readMounts();
    const Mount* const mount = mountAt(mounts, root);
    return mount != nullptr && holdsFiles(*mount) && !isAmong(kWithoutAccessLists, mount->type);
}

bool LinuxVolumes::isFat(const std::string& root) {
    const std::vector<Mount> mounts = readMounts();
    const Mount* const mount = mountAt(mounts, root);
    return mount != nullptr && isAmong(kFat, mount->type);
}

WalkRoots LinuxVolumes::walkRoots() {
    const std::vector<Mount> mounts = readMounts();
    WalkRoots walk;
    for (const Mount& mount : mounts) {
        if (mountAt(mounts, mount.point) != &mount || !isSeen(mount)) continue;
        if (holdsFiles(mount) && canBeListed(mount.point)) walk.roots.push_back(mount.point);
        if (mount.point != "/") walk.barriers.push_back(mount.point);
    }
    std::sort(walk.roots.begin(), walk.roots.end());
    std::sort(walk.barriers.begin(), walk.barriers.end());
    return walk;
}

}  // namespace corvalence::platform::linux_system
