#pragma once

#include "machine.h"
#include "platform/json_settings_store.h"
#include "platform/windows/backup_streams.h"
#include "platform/windows/path_style.h"
#include "platform/windows/registry_file_types.h"
#include "platform/windows/windows_access_control.h"
#include "platform/windows/windows_access_lists.h"
#include "platform/windows/windows_clock.h"
#include "platform/windows/windows_file_system.h"
#include "platform/windows/windows_process.h"
#include "platform/windows/windows_system_status.h"
#include "platform/windows/windows_volumes.h"

namespace corvalence::test {

/// The real back end of the system that the tests run on.
struct SystemBackEnd {
    platform::windows_system::WindowsFileSystem files;
    platform::windows_system::WindowsAccessControl access;
    platform::windows_system::WindowsVolumes volumes;
    platform::windows_system::WindowsProcess process{"C:\\no installation of the user's own\\"};
    platform::windows_system::RegistryFileTypes types;
    platform::windows_system::WindowsClock clock;
    platform::windows_system::BackupStreams streams;
    platform::windows_system::WindowsAccessLists accessLists;
    platform::windows_system::WindowsSystemStatus status;
    base::PathRules paths = platform::windows_system::kPaths;
};

/// The system's clock in a place without summer time, or in one that changes on the last Sundays of March and
/// October.
class ZonedClock {
  public:
    static TIME_ZONE_INFORMATION utc() { return {}; }
    static TIME_ZONE_INFORMATION centralEurope() {
        TIME_ZONE_INFORMATION zone{};
        zone.Bias = -60;
        zone.DaylightBias = -60;
        zone.DaylightDate = {0, 3, 0, 5, 2, 0, 0, 0};
        zone.StandardDate = {0, 10, 0, 5, 3, 0, 0, 0};
        return zone;
    }
    explicit ZonedClock(const TIME_ZONE_INFORMATION& zone) : clock_(zone) {}
    platform::Clock& clock() { return clock_; }

  private:
    platform::windows_system::WindowsClock clock_;
};

/// A settings store that is a file, as in a folder of one's own.
using SystemSettingsStore = platform::JsonSettingsStore;

}  // namespace corvalence::test
