#pragma once

#include "platform/recycle_bin.h"

namespace corvalence::platform::windows_system {

/// The shell's folder of what this user threw away, on all drives. Starts the component library of the
/// calling thread for each call.
class ShellRecycleBin : public RecycleBin {
  public:
    std::vector<RecycledItem> items() override;
};

}  // namespace corvalence::platform::windows_system
