#pragma once

#include <memory>
#include <string>

#include "components/machine.h"
#include "core/folder_icons.h"
#include "gui/program_files.h"
#include "platform/auto_start.h"
#include "platform/mail.h"
#include "platform/platform.h"

namespace corvalence::gui {

/// What the program's main brings along from the system that it runs on.
struct Host {
    platform::FileSystem& files;
    platform::AccessControl& access;
    platform::Volumes& volumes;
    platform::SystemStatus& status;
    platform::Process& process;
    platform::FileTypes& types;
    platform::Clock& clock;
    platform::SettingsStore& settings;
    platform::Sound& sound;
    platform::AutoStart& autoStart;
    components::Machine machine;
    std::shared_ptr<platform::Mail> mail;
    base::PathRules paths;
    /// Where the user's own installation lies, or is to be made, with a closing separator.
    std::string dataRoot;
    ProgramFiles program;
    core::FolderIconFile folderIcon;
};

}  // namespace corvalence::gui
