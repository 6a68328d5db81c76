#pragma once

#include "fake_clock.h"
#include "faulty_file_system.h"
#include "map_settings_store.h"
#include "platform/platform.h"
#include "recording_sound.h"
#include "scripted_user_interface.h"
#include "small_disk.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {

/// A whole platform over real files: everything real but the user, the sound, the time and the settings, and
/// a plan of mishaps that is empty at first.
class TestPlatform {
  public:
    TestPlatform() = default;
    TestPlatform(const TestPlatform&) = delete;
    TestPlatform& operator=(const TestPlatform&) = delete;

    TempFolder folder;
    SystemBackEnd system;
    FaultPlan faults;
    FaultyFileSystem files{system.files, faults};
    FaultyAccessControl access{system.access, faults};
    SmallVolumes volumes{system.volumes};
    SmallDisk status{system.status};
    FakeClock clock;
    MapSettingsStore settings;
    RecordingSound sound;
    ScriptedUserInterface ui;

    platform::Platform platform{files, access,   volumes, status, system.process, system.types,
                                clock, settings, sound,   ui,     system.paths};
};

}  // namespace corvalence::test
