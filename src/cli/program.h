#pragma once

#include <functional>
#include <istream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/exit_code.h"
#include "components/machine.h"
#include "crypto/md5.h"
#include "platform/mail.h"
#include "platform/platform.h"
#include "platform/supervisor.h"
#include "platform/terminal.h"

namespace corvalence::cli {

/// Where an installation lies: its data folders, and the settings that name it.
struct Place {
    std::string dataRoot;  // with a closing separator
    std::unique_ptr<platform::SettingsStore> settings;
};

/// What the program's main brings along from the system that it runs on.
struct Host {
    platform::FileSystem& files;
    platform::AccessControl& access;
    platform::Volumes& volumes;
    platform::SystemStatus& status;
    platform::Process& process;
    platform::FileTypes& types;
    platform::Clock& clock;
    platform::Terminal& terminal;
    components::Machine machine;
    std::shared_ptr<platform::Mail> mail;
    platform::Supervisor& supervisor;
    base::PathRules paths;
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    /// The place in a folder (absolute), or the user's own.
    std::function<Place(const std::optional<std::string>& home)> openPlace;
    /// The digest of the help file that was built with the program, where one was.
    std::optional<crypto::Md5::Digest> builtHelp = {};
};

/// The whole console program. `arguments` without the program's name. Never throws: every failure is told on
/// `err` and becomes an exit code.
ExitCode runProgram(const Host& host, const std::vector<std::string>& arguments);

}  // namespace corvalence::cli
