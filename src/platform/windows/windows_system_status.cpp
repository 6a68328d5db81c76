#include "platform/windows/windows_system_status.h"

#include <windows.h>

#include "base/file_failure.h"
#include "platform/windows/wide.h"
#include "platform/windows/windows_volumes.h"

namespace corvalence::platform::windows_system {

std::optional<Capacity> WindowsSystemStatus::memory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    if (::GlobalMemoryStatusEx(&status) == FALSE) return std::nullopt;
    return Capacity{status.ullAvailPhys, status.ullTotalPhys};
}

std::optional<Capacity> WindowsSystemStatus::disk(const std::string& path) {
    try {
        if (::GetFileAttributesW(systemPath(path).c_str()) == INVALID_FILE_ATTRIBUTES) return std::nullopt;
        const auto root = toWide(WindowsVolumes().rootOf(path));
        ULARGE_INTEGER available{};
        ULARGE_INTEGER total{};
        if (!root || ::GetDiskFreeSpaceExW(root->c_str(), &available, &total, nullptr) == FALSE)
            return std::nullopt;
        return Capacity{available.QuadPart, total.QuadPart};
    } catch (const base::FileFailure&) {
        return std::nullopt;  // no path that the system could be asked about
    }
}

}  // namespace corvalence::platform::windows_system
