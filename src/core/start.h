#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "core/password_stage.h"
#include "store/vault.h"

namespace corvalence::core {

/// How a start ended; every refusal has been told to the user by then.
enum class StartResult {
    Ready,
    NoInstallation,
    AlreadyRunning,
    NotAdministrator,
    PasswordRefused,
    Cancelled
};

/// One run on an installation: lock, settings, temporaries and session, from the start routine to the end.
/// What a killed run left is cleared away while it starts; what this run made is gone when the object goes.
class Run {
  public:
    /// Takes the lock of the installation that the settings name, tests for an administrator, wipes what a
    /// killed run left in plain, proves the password and settles half-done saves, in this order. Throws
    /// base::FileFailure.
    static StartResult start(platform::Platform& platform, PasswordDialog& dialog,
                             std::chrono::milliseconds wait, std::unique_ptr<Run>& run);

    /// Ready where the user is an administrator; told, and NotAdministrator, where not.
    static StartResult proveAdministrator(platform::Platform& platform);

    /// The first steps alone, for what needs no password: lock and administrator test on `root`.
    static StartResult lock(platform::Platform& platform, const std::string& root,
                            std::chrono::milliseconds wait, std::unique_ptr<platform::InstanceLock>& lock);

    store::Vault& vault() noexcept { return *vault_; }
    /// Goes on with another session, once everything is sealed for it.
    void adopt(std::unique_ptr<crypto::Session> session);
    settings::Configuration& configuration() noexcept { return configuration_; }

  private:
    Run(platform::Platform& platform, const std::string& root);

    platform::Platform& platform_;
    settings::Configuration configuration_;
    std::unique_ptr<platform::InstanceLock> lock_;
    crypto::WorkingFiles working_;
    std::unique_ptr<crypto::Session> session_;
    std::optional<store::Vault> vault_;
};

}  // namespace corvalence::core
