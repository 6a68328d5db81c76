#include "files/location.h"

namespace corvalence::files {

namespace {

bool isFolder(platform::Platform& system, const std::string& path) {
    try {
        const auto status = system.files.status(path, platform::Follow::Yes);
        return status && status->kind == platform::FileKind::Folder;
    } catch (const base::FileFailure&) {
        return false;  // the refusal says what can be said of the drive
    }
}

/// The root of the location's drive where that drive cannot be reached; else nothing.
std::string unreachableRoot(platform::Platform& system, const std::string& location) {
    try {
        const std::string root = system.volumes.rootOf(location);
        return isFolder(system, root) ? std::string() : root;
    } catch (const base::FileFailure&) {
        return {};  // a drive that the machine does not have
    }
}

}  // namespace

std::string locationRefusal(platform::Platform& system, const std::string& location) {
    if (location == kAnyLocation || isFolder(system, location)) return {};
    const std::string root = unreachableRoot(system, location);
    switch (root.empty() ? platform::DriveType::Unknown : system.volumes.driveType(root)) {
        case platform::DriveType::Removable:
            return "There is no media in " + root;
        case platform::DriveType::Optical:
            return "There is no disc in " + root;
        case platform::DriveType::Remote:
            return root +
                   " is an unaccessable network drive.\n"
                   "Make sure you are connected to " +
                   root + " and that you have access rights.";
        case platform::DriveType::Fixed:
        case platform::DriveType::Unknown:
            break;
    }
    return location + "  is not a valid location.";
}

}  // namespace corvalence::files
