#include "platform/linux/linux_access_control.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <vector>

#include "platform/linux/attribute_query.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/linux_file.h"
#include "platform/linux/pinned_path.h"
#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

/// The kernel's own seal over a file's attributes: it makes one for each file and takes none from others.
constexpr std::string_view kKernelSeal = "security.evm";

/// What decides over access; a file system that cannot take these cannot stand in for one that has them.
constexpr std::array<std::string_view, 2> kNeverLost = {"system.posix_acl_access", "security.capability"};

const LinuxFile& linuxFile(File& file) {
    return dynamic_cast<LinuxFile&>(file);
}

bool isNeverLost(std::string_view name) {
    return std::find(kNeverLost.begin(), kNeverLost.end(), name) != kNeverLost.end();
}

std::vector<std::string> namesOfSource(const Descriptor& file, const std::string& path) {
    const std::string pinned = file.pinnedPath();
    auto names = attributeNames(
        [&](char* buffer, std::size_t size) { return ::listxattr(pinned.c_str(), buffer, size); });
    if (!names) throwSystemError(path);
    return *std::move(names);
}

std::vector<std::string> namesOfTarget(const LinuxFile& file) {
    auto names = attributeNames(
        [&](char* buffer, std::size_t size) { return ::flistxattr(file.descriptor(), buffer, size); });
    if (!names) throwSystemError(file.path());
    return *std::move(names);
}

void copyAttribute(const Descriptor& from, const std::string& fromPath, const LinuxFile& to,
                   const std::string& name) {
    const std::string pinned = from.pinnedPath();
    const auto value = fillBuffer([&](char* buffer, std::size_t size) {
        return ::getxattr(pinned.c_str(), name.c_str(), buffer, size);
    });
    if (!value) {
        if (errno == ENODATA || errno == ENOTSUP) return;  // gone meanwhile, or only listed
        throwSystemError(fromPath);
    }
    if (::fsetxattr(to.descriptor(), name.c_str(), value->data(), value->size(), 0) == 0) return;
    if (name == kKernelSeal || (errno == ENOTSUP && !isNeverLost(name))) return;
    throwSystemError(to.path());
}

/// Takes away what the new file inherited from its folder and the old one lacks.
void removeOtherAttributes(const std::vector<std::string>& wanted, const LinuxFile& to) {
    for (const std::string& name : namesOfTarget(to)) {
        if (std::find(wanted.begin(), wanted.end(), name) != wanted.end()) continue;
        if (::fremovexattr(to.descriptor(), name.c_str()) == 0 || errno == ENODATA) continue;
        // Labels that the system itself puts on every file stay.
        if (!isNeverLost(name) && (errno == ENOTSUP || errno == EPERM || errno == EACCES)) continue;
        throwSystemError(to.path());
    }
}

/// Sets the mode and looks whether it came about: the system drops a set-group-id bit that the caller may not
/// give without a word.
void setMode(const LinuxFile& file, mode_t mode) {
    struct stat after {};
    if (::fchmod(file.descriptor(), mode) != 0 || ::fstat(file.descriptor(), &after) != 0) {
        throwSystemError(file.path());
    }
    if ((after.st_mode & ALLPERMS) != mode) throw failureOf(EPERM, file.path());
}

}  // namespace

void LinuxAccessControl::copyProtection(const std::string& from, File& to) {
    const LinuxFile& target = linuxFile(to);
    const Descriptor source(::open(systemPath(from), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat wanted {};
    struct stat present {};
    if (!source.isOpen() || ::fstat(source.number(), &wanted) != 0) throwSystemError(from);
    // A link that took the file's place since it was looked at must not lend its target's owner and mode.
    if (!S_ISREG(wanted.st_mode)) throw base::FileFailure(base::Cause::InvalidFile, 0, from);
    if (::fstat(target.descriptor(), &present) != 0) throwSystemError(target.path());

    // The owner first, since a change of owner takes capabilities and set-id bits away; the mode last, since
    // until then only the owner may open the file.
    if ((wanted.st_uid != present.st_uid || wanted.st_gid != present.st_gid) &&
        ::fchown(target.descriptor(), wanted.st_uid, wanted.st_gid) != 0) {
        throwSystemError(target.path());
    }
    const std::vector<std::string> names = namesOfSource(source, from);
    removeOtherAttributes(names, target);
    for (const std::string& name : names)
        copyAttribute(source, from, target, name);
    setMode(target, wanted.st_mode & ALLPERMS);
}

void LinuxAccessControl::setAttributes(File& file, std::uint32_t attributes) {
    const LinuxFile& target = linuxFile(file);
    struct stat present {};
    if (::fstat(target.descriptor(), &present) != 0) throwSystemError(target.path());
    const mode_t mode = present.st_mode & ALLPERMS;
    const mode_t wanted = (attributes & attribute::kReadOnly) != 0 ? mode & ~mode_t{S_IWUSR} : mode | S_IWUSR;
    if (wanted != mode) setMode(target, wanted);
}

std::unique_ptr<PinnedFolder> LinuxAccessControl::pinFolderOf(const std::string& file, std::string& name) {
    return PathWalk(file).finish(name);
}

}  // namespace corvalence::platform::linux_system
