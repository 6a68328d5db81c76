#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shlobj.h>

#include <cstdio>
#include <iostream>
#include <stdexcept>

#include "cli/program.h"
#include "platform/json_settings_store.h"
#include "platform/windows/backup_streams.h"
#include "platform/windows/path_style.h"
#include "platform/windows/registry_file_types.h"
#include "platform/windows/registry_settings_store.h"
#include "platform/windows/shell_recycle_bin.h"
#include "platform/windows/simple_mapi.h"
#include "platform/windows/token.h"
#include "platform/windows/wide.h"
#include "platform/windows/windows_access_control.h"
#include "platform/windows/windows_access_lists.h"
#include "platform/windows/windows_clock.h"
#include "platform/windows/windows_file_system.h"
#include "platform/windows/windows_process.h"
#include "platform/windows/windows_registry.h"
#include "platform/windows/windows_service_manager.h"
#include "platform/windows/windows_system_status.h"
#include "platform/windows/windows_terminal.h"
#include "platform/windows/windows_volumes.h"

namespace {

using namespace corvalence;
using namespace corvalence::platform::windows_system;

/// The folder of the user's own installation, which does not travel with a roaming profile.
std::string ownFolder() {
    PWSTR folder = nullptr;
    const HRESULT result = ::SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, &folder);
    std::string text = SUCCEEDED(result) ? toUtf8(folder) + "\\Corvalence\\" : std::string();
    ::CoTaskMemFree(folder);
    return text;
}

cli::Place openPlace(WindowsFileSystem& files, const std::string& own,
                     const std::optional<std::string>& home) {
    if (home) {
        const std::string folder = kPaths.withSeparator(*home);
        return {folder,
                std::make_unique<platform::JsonSettingsStore>(files, folder + "settings.json", kPaths)};
    }
    if (own.empty()) {
        throw std::runtime_error(
            "The user has no folder for data; give the installation's folder with --home.");
    }
    return {own, std::make_unique<RegistrySettingsStore>()};
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    // Line ends are the program's own, and results are UTF-8 whatever the console's code page is.
    for (std::FILE* stream : {stdin, stdout, stderr})
        ::_setmode(::_fileno(stream), _O_BINARY);
    const UINT codePage = ::GetConsoleOutputCP();
    ::SetConsoleOutputCP(CP_UTF8);
    // Passwords come in this way, and nobody would wipe a buffer.
    std::setvbuf(stdin, nullptr, _IONBF, 0);

    const Privilege backup(SE_BACKUP_NAME);
    const std::string own = ownFolder();
    WindowsFileSystem files;
    WindowsAccessControl access;
    WindowsVolumes volumes;
    WindowsSystemStatus status;
    WindowsProcess process(own);
    RegistryFileTypes types;
    WindowsClock clock;
    WindowsTerminal terminal(process);
    BackupStreams streams;
    WindowsServiceManager services;
    WindowsRegistry registry;
    platform::Supervisor supervisor;
    WindowsAccessLists accessLists;
    ShellRecycleBin recycleBin;
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
        .machine = {streams, recycleBin, services, registry, accessLists},
        .mail = std::make_shared<SimpleMapi>(),
        .supervisor = supervisor,
        .paths = kPaths,
        .in = std::cin,
        .out = std::cout,
        .err = std::cerr,
        .openPlace = [&](const std::optional<std::string>& home) { return openPlace(files, own, home); }};
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i)
        arguments.push_back(toUtf8(argv[i]));
    const auto code = static_cast<int>(cli::runProgram(host, arguments));
    if (codePage != 0) ::SetConsoleOutputCP(codePage);
    return code;
}
