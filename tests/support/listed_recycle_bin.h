#pragma once

#include <optional>
#include <vector>

#include "base/file_failure.h"
#include "platform/recycle_bin.h"

namespace corvalence::test {

/// A Recycle Bin that holds what a test throws into it, or cannot be listed.
class ListedRecycleBin : public platform::RecycleBin {
  public:
    std::vector<platform::RecycledItem> thrownAway;
    bool fails = false;

    std::vector<platform::RecycledItem> items() override {
        if (fails) throw base::FileFailure(base::Cause::AccessDenied, 0, "bin");
        return thrownAway;
    }
};

}  // namespace corvalence::test
