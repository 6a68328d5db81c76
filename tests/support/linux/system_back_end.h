#pragma once

#include "base/path_rules.h"
#include "platform/linux/json_settings_store.h"
#include "platform/linux/linux_access_control.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_file_system.h"
#include "platform/linux/linux_process.h"
#include "platform/linux/linux_volumes.h"
#include "platform/linux/mime_file_types.h"

namespace corvalence::test {

/// The real back end of the system that the tests run on.
struct SystemBackEnd {
    platform::linux_system::LinuxFileSystem files;
    platform::linux_system::LinuxAccessControl access;
    platform::linux_system::LinuxVolumes volumes;
    platform::linux_system::LinuxProcess process;
    platform::linux_system::MimeFileTypes types;
    platform::linux_system::LinuxClock clock;
    base::PathRules paths{};
};

/// The settings store of this system, in a file or below a name of its own.
using SystemSettingsStore = platform::linux_system::JsonSettingsStore;

}  // namespace corvalence::test
