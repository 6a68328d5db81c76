#pragma once

#include "platform/auto_start.h"
#include "platform/file_system.h"

namespace corvalence::platform::linux_system {

/// A desktop entry in the folder of programs that the user's desktop starts with the session. Switched off it
/// is gone.
class DesktopAutoStart : public AutoStart {
  public:
    /// `folder`: "autostart" in the user's configuration folder; need not exist.
    DesktopAutoStart(FileSystem& files, const std::string& folder)
        : files_(files), folder_(folder), path_(folder + "/corvalence.desktop") {}

    bool enable(const std::string& program) override;
    bool disable() override;
    bool isEnabled() override;

  private:
    FileSystem& files_;
    std::string folder_;
    std::string path_;
};

}  // namespace corvalence::platform::linux_system
