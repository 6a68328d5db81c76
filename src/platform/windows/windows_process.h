#pragma once

#include <string>

#include "platform/process.h"

namespace corvalence::platform::windows_system {

class WindowsProcess : public Process {
  public:
    /// `ownFolder`: where the installation of the user's own lies, whose mutex bears the product's name
    /// alone.
    explicit WindowsProcess(std::string ownFolder) : ownFolder_(std::move(ownFolder)) {}

    /// The lock is a named mutex, held by having made it. Another folder's has a hash of the folder's
    /// identity behind the name and holds for all sessions of the machine.
    std::unique_ptr<InstanceLock> lockInstallation(const std::string& folder,
                                                   std::chrono::milliseconds wait) override;
    bool isAdministrator() override;
    std::string currentFolder() override;
    std::string programFile() override;

    void catchCancelSignals() override;
    bool cancelRequested() const noexcept override;

  private:
    std::wstring mutexName(const std::string& folder) const;

    std::string ownFolder_;
};

}  // namespace corvalence::platform::windows_system
