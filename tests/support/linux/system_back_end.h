#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

#include "base/path_rules.h"
#include "platform/json_settings_store.h"
#include "platform/linux/extended_attributes.h"
#include "platform/linux/linux_access_control.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_file_system.h"
#include "platform/linux/linux_process.h"
#include "platform/linux/linux_system_status.h"
#include "platform/linux/linux_volumes.h"
#include "platform/linux/mime_file_types.h"
#include "platform/linux/posix_access_lists.h"

namespace corvalence::test {

/// The real back end of the system that the tests run on.
struct SystemBackEnd {
    platform::linux_system::LinuxFileSystem files;
    platform::linux_system::LinuxAccessControl access;
    platform::linux_system::LinuxVolumes volumes;
    platform::linux_system::LinuxProcess process;
    platform::linux_system::MimeFileTypes types;
    platform::linux_system::LinuxClock clock;
    platform::linux_system::ExtendedAttributes streams;
    platform::linux_system::PosixAccessLists accessLists;
    platform::linux_system::LinuxSystemStatus status;
    base::PathRules paths{};
};

/// A folder whose files lie in memory, where the machine has one: for worlds that are made a thousand times
/// over, each file of which is brought to the device.
inline std::string quickFolder() {
    const char* const memory = "/dev/shm";
    return ::access(memory, W_OK) == 0 ? memory : std::filesystem::temp_directory_path().string();
}

/// The settings store of this system, in a file or below a name of its own.
using SystemSettingsStore = platform::JsonSettingsStore;

}  // namespace corvalence::test
