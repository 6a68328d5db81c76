#include "platform/windows/windows_volumes.h"

#include <windows.h>

#include <array>
#include <string_view>

#include "platform/windows/path_style.h"
#include "platform/windows/system_error.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

/// While it lives, a drive without a medium is a failure and no question to whoever sits at the machine.
class NoMediaQuestions {
  public:
    NoMediaQuestions() noexcept { ::SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before_); }
    ~NoMediaQuestions() { ::SetThreadErrorMode(before_, nullptr); }
    NoMediaQuestions(const NoMediaQuestions&) = delete;
    NoMediaQuestions& operator=(const NoMediaQuestions&) = delete;

  private:
    DWORD before_ = 0;
};

bool canBeListed(const std::wstring& root) {
    WIN32_FIND_DATAW data;
    const HANDLE search = ::FindFirstFileW((root + L'*').c_str(), &data);
    if (search == INVALID_HANDLE_VALUE) return false;
    ::FindClose(search);
    return true;
}

}  // namespace

std::string WindowsVolumes::rootOf(const std::string& path) {
    if (!isSystemPath(path)) return {};
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

bool WindowsVolumes::keepsAccessLists(const std::string& root) {
    const NoMediaQuestions quiet;
    const auto wide = toWide(root);
    DWORD flags = 0;
    return wide &&
           ::GetVolumeInformationW(wide->c_str(), nullptr, 0, nullptr, nullptr, &flags, nullptr, 0) !=
               FALSE &&
           (flags & FILE_PERSISTENT_ACLS) != 0;
}

bool WindowsVolumes::isFat(const std::string& root) {
    const NoMediaQuestions quiet;
    const auto wide = toWide(root);
    std::array<wchar_t, MAX_PATH + 1> system{};
    if (!wide || !::GetVolumeInformationW(wide->c_str(), nullptr, 0, nullptr, nullptr, nullptr, system.data(),
                                          static_cast<DWORD>(system.size()))) {
        return false;
    }
    const std::wstring_view name(system.data());
    return name == L"FAT" || name == L"FAT32";
}

WalkRoots WindowsVolumes::walkRoots() {
    const NoMediaQuestions quiet;
    WalkRoots walk;
    for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
        const std::wstring root = {letter, L':', L'\\'};
        if (canBeListed(root)) walk.roots.push_back(toUtf8(root));
    }
    return walk;
}

}  // namespace corvalence::platform::windows_system
