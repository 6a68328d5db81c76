#include <cstdio>
#include <iostream>

#include "cli/program.h"
#include "platform/json_settings_store.h"
#include "platform/linux/back_ends.h"
#include "platform/linux/linux_terminal.h"
#include "platform/linux/program_start.h"
#include "platform/linux/systemd_supervisor.h"

#ifdef CORVALENCE_HAS_HELP
#include "help_digest.h"
#endif

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

/// Only a build with the graphical program makes the help.
std::optional<crypto::Md5::Digest> builtHelp() {
#ifdef CORVALENCE_HAS_HELP
    return kHelpDigest;
#else
    return std::nullopt;
#endif
}

}  // namespace

int main(int argc, char** argv) {
    prepareProgram();
    // Passwords come in this way, and nobody would wipe a buffer.
    std::setvbuf(stdin, nullptr, _IONBF, 0);

    BackEnds system;
    LinuxTerminal terminal(system.process);
    SystemdSupervisor supervisor;
    const base::PathRules paths;
    system.process.catchCancelSignals();
    const cli::Host host{
        .files = system.files,
        .access = system.access,
        .volumes = system.volumes,
        .status = system.status,
        .process = system.process,
        .types = system.types,
        .clock = system.clock,
        .terminal = terminal,
        .machine = {system.streams, system.trash, system.services, system.registry, system.accessLists},
        .mail = system.mail,
        .supervisor = supervisor,
        .paths = paths,
        .in = std::cin,
        .out = std::cout,
        .err = std::cerr,
        .openPlace =
            [&](const std::optional<std::string>& home) { return openPlace(system.files, paths, home); },
        .builtHelp = builtHelp()};
    return static_cast<int>(cli::runProgram(host, std::vector<std::string>(argv + 1, argv + argc)));
}
