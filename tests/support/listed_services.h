#pragma once

#include <vector>

#include "base/file_failure.h"
#include "platform/service_manager.h"

namespace corvalence::test {

/// A service manager that lists what a test installs, in the test's order, or cannot be reached.
class ListedServices : public platform::ServiceManager {
  public:
    std::vector<platform::Service> installed;
    bool fails = false;

    std::vector<platform::Service> services() override {
        if (fails) throw base::FileFailure(base::Cause::AccessDenied, 0, "service manager");
        return installed;
    }
};

}  // namespace corvalence::test
