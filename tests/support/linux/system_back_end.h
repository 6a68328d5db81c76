#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>

#include "base/path_rules.h"
#include "machine.h"
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

/// The system's clock in a place without summer time, or in one that changes on the last Sundays of March and
/// October. One at a time: the zone is the process's.
class ZonedClock {
  public:
    static const char* utc() { return "UTC0"; }
    static const char* centralEurope() { return "CET-1CEST,M3.5.0,M10.5.0/3"; }
    explicit ZonedClock(const char* zone) {
        ::setenv("TZ", zone, 1);
        clock_.emplace();
    }
    ~ZonedClock() {
        ::unsetenv("TZ");
        ::tzset();
    }
    ZonedClock(const ZonedClock&) = delete;
    ZonedClock& operator=(const ZonedClock&) = delete;
    platform::Clock& clock() { return *clock_; }

  private:
    std::optional<platform::linux_system::LinuxClock> clock_;
};

/// A settings store that is a file, as in a folder of one's own.
using SystemSettingsStore = platform::JsonSettingsStore;

}  // namespace corvalence::test
