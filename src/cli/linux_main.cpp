#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "cli/program.h"
#include "platform/json_settings_store.h"
#include "platform/linux/extended_attributes.h"
#include "platform/linux/linux_access_control.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_file_system.h"
#include "platform/linux/linux_process.h"
#include "platform/linux/linux_registry.h"
#include "platform/linux/linux_system_status.h"
#include "platform/linux/linux_terminal.h"
#include "platform/linux/linux_volumes.h"
#include "platform/linux/mime_file_types.h"
#include "platform/linux/posix_access_lists.h"
#include "platform/linux/smtp_mail.h"
#include "platform/linux/systemd_services.h"
#include "platform/linux/systemd_supervisor.h"
#include "platform/linux/trash_folders.h"

namespace {

using namespace corvalence;
using namespace corvalence::platform::linux_system;

constexpr const char* kProductFolder = "/corvalence/";

std::string userHome() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') return home;
    const passwd* entry = ::getpwuid(::getuid());
    if (entry == nullptr || entry->pw_dir == nullptr || *entry->pw_dir != '/') {
        throw std::runtime_error("The user has no home folder; give the installation's folder with --home.");
    }
    return entry->pw_dir;
}

/// A folder of the XDG base directories; one that is not absolute counts as not given.
std::string userFolder(const char* variable, const char* fallback) {
    const char* folder = std::getenv(variable);
    return folder != nullptr && *folder == '/' ? folder : userHome() + fallback;
}

/// A standard descriptor that the caller closed would be given to the next file that is opened, and results
/// would be written into that. In its place comes one on which reading or writing fails.
void occupyStandardDescriptors() {
    constexpr int kWrongWay[] = {O_WRONLY, O_RDONLY, O_RDONLY};
    for (int number = 0; number <= STDERR_FILENO; ++number) {
        if (::fcntl(number, F_GETFD) == -1 && ::open("/dev/null", kWrongWay[number]) != number) std::abort();
    }
}

cli::Place openPlace(LinuxFileSystem& files, const base::PathRules& paths,
                     const std::optional<std::string>& home) {
    std::string dataRoot;
    std::string settings;
    if (home) {
        dataRoot = paths.withSeparator(*home);
        settings = dataRoot;
    } else {
        dataRoot = userFolder("XDG_DATA_HOME", "/.local/share") + kProductFolder;
        settings = userFolder("XDG_CONFIG_HOME", "/.config") + kProductFolder;
    }
    return {paths.withSeparator(paths.absolute(dataRoot, "/")),
            std::make_unique<platform::JsonSettingsStore>(files,
                                                          paths.absolute(settings + "settings.json", "/"))};
}

}  // namespace

int main(int argc, char** argv) {
    occupyStandardDescriptors();
    // A reader that goes away, as `head` does, must not end the program between making a plain copy and
    // wiping it; the failed write is told instead.
    std::signal(SIGPIPE, SIG_IGN);
    // A limit on the size of files is to be told as a full disk, not to end the process.
    std::signal(SIGXFSZ, SIG_IGN);
    // Passwords come in this way, and nobody would wipe a buffer.
    std::setvbuf(stdin, nullptr, _IONBF, 0);

    LinuxFileSystem files;
    LinuxAccessControl access;
    LinuxVolumes volumes;
    LinuxSystemStatus status;
    LinuxProcess process;
    MimeFileTypes types;
    LinuxClock clock;
    LinuxTerminal terminal(process);
    ExtendedAttributes streams;
    SystemdServices services(files);
    LinuxRegistry registry(files);
    SystemdSupervisor supervisor;
    PosixAccessLists accessLists;
    TrashFolders trash(files, [&volumes] { return trashPlaces(volumes); });
    const base::PathRules paths;
    process.catchCancelSignals();
    const cli::Host host{
        .files = files,
        .access = access,
        .volumes = volumes,
        .status = status,
        .process = process,
        .types = types,
        .clock = clock,
        .terminal = terminal,
        .machine = {streams, trash, services, registry, accessLists},
        .mail = std::make_shared<SmtpMail>(files, clock),
        .supervisor = supervisor,
        .paths = paths,
        .in = std::cin,
        .out = std::cout,
        .err = std::cerr,
        .openPlace = [&](const std::optional<std::string>& home) { return openPlace(files, paths, home); }};
    return static_cast<int>(cli::runProgram(host, std::vector<std::string>(argv + 1, argv + argc)));
}
