#pragma once

#include "platform/process.h"

namespace corvalence::platform::linux_system {

class LinuxProcess : public Process {
  public:
    /// The lock is a file "lock" in `folder` that stays there. Throws base::FileFailure where it cannot be
    /// made.
    std::unique_ptr<InstanceLock> lockInstallation(const std::string& folder,
                                                   std::chrono::milliseconds wait) override;
    bool isAdministrator() override;
    std::string currentFolder() override;
    /// Needs the process file system at /proc.
    std::string programFile() override;

    /// A SIGHUP that is ignored already (nohup) stays ignored.
    void catchCancelSignals() override;
    bool cancelRequested() const noexcept override;
};

}  // namespace corvalence::platform::linux_system
