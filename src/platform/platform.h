#pragma once

#include "base/path_rules.h"
#include "platform/access_control.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/file_types.h"
#include "platform/process.h"
#include "platform/settings_store.h"
#include "platform/sound.h"
#include "platform/system_status.h"
#include "platform/user_interface.h"
#include "platform/volumes.h"

namespace corvalence::platform {

/// Everything through which the logic reaches the operating system and the user. Built once by a program's
/// main (or a test) and passed down.
struct Platform {
    FileSystem& files;
    AccessControl& access;
    Volumes& volumes;
    SystemStatus& status;
    Process& process;
    FileTypes& types;
    Clock& clock;
    SettingsStore& settings;
    Sound& sound;
    UserInterface& ui;
    base::PathRules paths;
};

}  // namespace corvalence::platform
