#include "platform/linux/linux_clock.h"

#include <ctime>
#include <thread>

namespace corvalence::platform::linux_system {

LinuxClock::LinuxClock() {
    ::tzset();
}

base::FileTime LinuxClock::now() {
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return base::FileTime::fromUnix(time.tv_sec, static_cast<std::uint32_t>(time.tv_nsec));
}

base::LocalTime LinuxClock::local(base::FileTime time) {
    const std::time_t seconds = time.unixSeconds();
    std::tm parts{};
    if (::localtime_r(&seconds, &parts) == nullptr) return {};
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

std::chrono::milliseconds LinuxClock::elapsed() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

void LinuxClock::sleep(std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
}

}  // namespace corvalence::platform::linux_system
