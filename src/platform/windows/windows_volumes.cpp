#include "platform/windows/windows_volumes.h"

#include <windows.h>

#include "platform/windows/path_style.h"
#include "platform/windows/system_error.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

std::string WindowsVolumes::rootOf(const std::string& path) {
    const std::wstring wide = systemPath(path);
    std::wstring root(wide.size() + 2, L'\0');
    if (!::GetVolumePathNameW(wide.c_str(), root.data(), static_cast<DWORD>(root.size())))
        throwSystemError(path);
    root.resize(root.find(L'\0'));
    return kPaths.withSeparator(plainPath(root));
}

DriveType WindowsVolumes::driveType(const std::string& root) {
    switch (::GetDriveTypeW(toWide(kPaths.withSeparator(root)).value_or(L"").c_str())) {
        case DRIVE_REMOVABLE:
            return DriveType::Removable;
        case DRIVE_FIXED:
        case DRIVE_RAMDISK:
            return DriveType::Fixed;
        case DRIVE_REMOTE:
            return DriveType::Remote;
        case DRIVE_CDROM:
            return DriveType::Optical;
        default:
            return DriveType::Unknown;
    }
}

}  // namespace corvalence::platform::windows_system
