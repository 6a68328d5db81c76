#include "platform/linux/program_start.h"

#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace corvalence::platform::linux_system {

namespace {

constexpr const char* kProductFolder = "/corvalence/";

std::string userHome() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') return home;
    const passwd* entry = ::getpwuid(::getuid());
    if (entry == nullptr || entry->pw_dir == nullptr || *entry->pw_dir != '/') {
        throw std::runtime_error("The user has no home folder; give the installation's folder with --home.");
    }
    return entry->pw_dir;
}

std::string userFolder(const char* variable, const char* fallback) {
    const char* folder = std::getenv(variable);
    return folder != nullptr && *folder == '/' ? folder : userHome() + fallback;
}

/// In the place of a missing one comes one on which reading or writing fails.
void occupyStandardDescriptors() {
    constexpr int kWrongWay[] = {O_WRONLY, O_RDONLY, O_RDONLY};
    for (int number = 0; number <= STDERR_FILENO; ++number) {
        if (::fcntl(number, F_GETFD) == -1 && ::open("/dev/null", kWrongWay[number]) != number) std::abort();
    }
}

}  // namespace

void prepareProgram() {
    occupyStandardDescriptors();
    // A reader that goes away, as `head` does, must not end the program between making a plain copy and
    // wiping it; the failed write is told instead.
    std::signal(SIGPIPE, SIG_IGN);
    // A limit on the size of files is to be told as a full disk, not to end the process.
    std::signal(SIGXFSZ, SIG_IGN);
}

OwnPlace ownPlace() {
    const std::string configuration = userFolder("XDG_CONFIG_HOME", "/.config");
    return {userFolder("XDG_DATA_HOME", "/.local/share") + kProductFolder,
            configuration + kProductFolder + "settings.json", configuration + "/autostart"};
}

}  // namespace corvalence::platform::linux_system
