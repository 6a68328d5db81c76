#include "platform/windows/windows_clock.h"

#include <thread>

namespace corvalence::platform::windows_system {

base::FileTime WindowsClock::now() {
    FILETIME time{};
    ::GetSystemTimePreciseAsFileTime(&time);
    return {(std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime};
}

base::LocalTime WindowsClock::local(base::FileTime time) {
    const FILETIME wanted{static_cast<DWORD>(time.ticks & 0xFFFF'FFFFU),
                          static_cast<DWORD>(time.ticks >> 32)};
    SYSTEMTIME universal{};
    SYSTEMTIME local{};
    if (!::FileTimeToSystemTime(&wanted, &universal)) return {};
    // The rules of summer time that held in that year.
    TIME_ZONE_INFORMATION zone{};
    if (zone_) {
        zone = *zone_;
    } else if (!::GetTimeZoneInformationForYear(universal.wYear, nullptr, &zone)) {
        ::GetTimeZoneInformation(&zone);
    }
    if (!::SystemTimeToTzSpecificLocalTime(&zone, &universal, &local)) return {};
    return {local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond};
}

std::chrono::milliseconds WindowsClock::elapsed() {
    return std::chrono::milliseconds(::GetTickCount64());
}

void WindowsClock::sleep(std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
}

}  // namespace corvalence::platform::windows_system
