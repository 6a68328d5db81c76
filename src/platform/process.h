#pragma once

#include <chrono>
#include <memory>
#include <string>

namespace corvalence::platform {

/// Held as long as this program is the one at work on an installation.
class InstanceLock {
  public:
    virtual ~InstanceLock() = default;
};

class Process {
  public:
    virtual ~Process() = default;

    /// Takes the single-instance lock of the installation in `folder`, waiting up to `wait` for another
    /// program that holds it. Null where it is still held then, or cancelRequested() became true while
    /// waiting. The folder must exist.
    virtual std::unique_ptr<InstanceLock> lockInstallation(const std::string& folder,
                                                           std::chrono::milliseconds wait) = 0;
    /// User id 0 or a member of "sudo", "wheel" or "admin" on Linux; of the Administrators group on Windows.
    virtual bool isAdministrator() = 0;
    /// The folder that relative paths start from, for making command line paths absolute.
    virtual std::string currentFolder() = 0;
    /// Full path of the running program, links on the way resolved. Of one that was replaced or removed since
    /// it was started, the path at which it stood. Throws base::FileFailure.
    virtual std::string programFile() = 0;

    /// From now on SIGINT, SIGTERM and SIGHUP (console control events on Windows) no longer end the process
    /// but set what cancelRequested() tells.
    virtual void catchCancelSignals() = 0;
    virtual bool cancelRequested() const noexcept = 0;
};

}  // namespace corvalence::platform
