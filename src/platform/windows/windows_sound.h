#pragma once

#include "platform/sound.h"

namespace corvalence::platform::windows_system {

/// Sounds from the program's resources, of type "WAVE", and from files.
class WindowsSound : public Sound {
  public:
    void playResource(const std::string& name) override;
    void playFile(const std::string& path) override;
};

}  // namespace corvalence::platform::windows_system
