#include <cstdio>
#include <iostream>

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
#include "platform/linux/program_start.h"
#include "platform/linux/smtp_mail.h"
#include "platform/linux/systemd_services.h"
#include "platform/linux/systemd_supervisor.h"
#include "platform/linux/trash_folders.h"

namespace {

using namespace corvalence;
using namespace corvalence::platform::linux_system;

cli::Place openPlace(LinuxFileSystem& files, const base::PathRules& paths,
                     const std::optional<std::string>& home) {
    std::string dataRoot;
    std::string settings;
    if (home) {
        dataRoot = paths.withSeparator(*home);
        settings = dataRoot + "settings.json";
    } else {
        OwnPlace own = ownPlace();
        dataRoot = std::move(own.dataRoot);
        settings = std::move(own.settingsFile);
    }
    return {paths.withSeparator(paths.absolute(dataRoot, "/")),
            std::make_unique<platform::JsonSettingsStore>(files, paths.absolute(settings, "/"))};
}

}  // namespace

int main(int argc, char** argv) {
    prepareProgram();
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
