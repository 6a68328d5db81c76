#include "core/start.h"

#include "core/installation.h"
#include "store/database_opening.h"

namespace corvalence::core {

Run::Run(platform::Platform& platform, const std::string& root)
    : platform_(platform),
      configuration_(platform.settings, platform.ui),
      working_(platform.files, journalPath(root), platform.paths) {}

void Run::adopt(std::unique_ptr<crypto::Session> session) {
    vault_.emplace(store::Vault{platform_, configuration_, working_, *session});
    session_ = std::move(session);
}

StartResult Run::proveAdministrator(platform::Platform& platform) {
    if (platform.process.isAdministrator()) return StartResult::Ready;
    platform.ui.message(
        platform::Icon::Stop,
        "Corvalence needs to be run from an Administrator account.\n\nIf you require a version "
        "that can be run from other accounts, contact Halvern Works \n\n"
        "support@halvernworks.example");
    return StartResult::NotAdministrator;
}

StartResult Run::lock(platform::Platform& platform, const std::string& root, std::chrono::milliseconds wait,
                      std::unique_ptr<platform::InstanceLock>& lock) {
    lock = platform.process.lockInstallation(root, wait);
    if (!lock) {
        if (platform.process.cancelRequested()) return StartResult::Cancelled;
        platform.ui.message(platform::Icon::Information, "Corvalence is already running.");
        return StartResult::AlreadyRunning;
    }
    return proveAdministrator(platform);
}

StartResult Run::start(platform::Platform& platform, PasswordDialog& dialog, std::chrono::milliseconds wait,
                       std::unique_ptr<Run>& run) {
    if (!isInstalled(platform)) return StartResult::NoInstallation;
    const std::string root =
        settings::Configuration(platform.settings, platform.ui).folder(settings::key::kInstallDirectory);
    std::unique_ptr<platform::InstanceLock> lock;
    const StartResult locked = Run::lock(platform, root, wait, lock);
    if (locked != StartResult::Ready) return locked;

    std::unique_ptr<Run> started(new Run(platform, root));
    started->lock_ = std::move(lock);
    started->working_.clearLeftovers();
    tellUncleared(platform, started->working_);
    const PasswordResult password =
        provePassword(platform, started->configuration_, started->working_, dialog, started->session_);
    if (password != PasswordResult::Proved) return StartResult::PasswordRefused;
    started->adopt(std::move(started->session_));
    store::DatabaseOpening(started->vault()).settlePending();
    run = std::move(started);
    return StartResult::Ready;
}

}  // namespace corvalence::core
