#include "core/installation.h"

#include <array>

#include "base/record_text.h"
#include "store/recent_list.h"

namespace corvalence::core {

namespace {

namespace key = settings::key;

struct SealedFileRow {
    std::string_view folderKey;
    std::string_view folder;
    std::string_view name;
};

// The sealed files that exist from the start, empty; a reset empties them again.
constexpr std::array<SealedFileRow, 5> kSealedFiles = {{
    {key::kBackupFilesDirectory, "Backup Files", "Database Index"},
    {key::kBackupFilesDirectory, "Backup Files", "Component Index"},
    {key::kScheduleDirectory, "Checking Schedule", "Scheduled Checking Log File"},
    {key::kScheduleDirectory, "Checking Schedule", "Scheduled Checking Log File~"},
    {key::kScheduleDirectory, "Checking Schedule", "Database Checking Schedule"},
}};

void empty(platform::FileSystem& files, const std::string& path) {
    if (files.status(path, platform::Follow::No)) {
        const auto file = files.openExclusive(path);
        file->resize(0);
        file->flush();
    } else {
        files.createNew(path)->flush();
    }
}

void writeOrThrow(settings::Configuration& configuration, std::string_view name, const std::string& text,
                  const std::string& root) {
    if (!configuration.write(name, text)) throw base::FileFailure(base::Cause::AccessDenied, 0, root);
}

}  // namespace

bool isInstalled(platform::Platform& platform) {
    const settings::Configuration configuration(platform.settings, platform.ui);
    const auto root = configuration.stored(key::kInstallDirectory);
    return root && !root->empty();
}

bool isSameFolder(platform::Platform& platform, const std::string& a, const std::string& b) {
    const auto first = platform.files.status(a, platform::Follow::Yes);
    const auto second = platform.files.status(b, platform::Follow::Yes);
    return first && second && first->kind == platform::FileKind::Folder &&
           first->identity == second->identity;
}

bool isInstalledIn(platform::Platform& platform, const std::string& folder) {
    const settings::Configuration configuration(platform.settings, platform.ui);
    return isInstalled(platform) &&
           isSameFolder(platform, configuration.folder(key::kInstallDirectory), folder);
}

InstallResult install(platform::Platform& platform, const std::string& root) {
    if (isInstalled(platform)) return InstallResult::AlreadyInstalled;
    if (!base::isRecordPath(root)) throw base::FileFailure(base::Cause::BadPath, 0, root);
    const base::PathRules& paths = platform.paths;
    const auto folder = [&](std::string_view name) { return paths.withSeparator(root + std::string(name)); };
    const auto index = platform.files.status(folder("Backup Files") + "Database Index", platform::Follow::No);
    if (index && index->size > 0) return InstallResult::DataInTheWay;

    for (const std::string_view name : kDataFolders)
        platform.files.createFolder(root + std::string(name));
    for (const SealedFileRow& row : kSealedFiles) {
        const std::string path = folder(row.folder) + std::string(row.name);
        if (!platform.files.status(path, platform::Follow::No)) platform.files.createNew(path);
    }
    settings::Configuration configuration(platform.settings, platform.ui);
    for (const settings::ConfigurationKey& row : settings::configurationKeys()) {
        writeOrThrow(configuration, row.name, std::string(row.fallback), root);
    }
    writeOrThrow(configuration, key::kBackupFilesDirectory, folder("Backup Files"), root);
    writeOrThrow(configuration, key::kChangedFilesDirectory, folder("Changed Files"), root);
    writeOrThrow(configuration, key::kScheduleDirectory, folder("Checking Schedule"), root);
    writeOrThrow(configuration, key::kInstallDirectory, root, root);
    return InstallResult::Installed;
}

std::string journalPath(const std::string& root) {
    return root + "Working Copies";
}

void tellUncleared(platform::Platform& platform, const crypto::WorkingFiles& working) {
    for (const std::string& text : working.uncleared()) {
        platform.ui.message(platform::Icon::Warning,
                            "A working file of an earlier run could not be cleared away: " + text);
    }
}

bool reset(platform::Platform& platform, settings::Configuration& configuration,
           crypto::WorkingFiles& working) {
    if (!platform.ui.ask(
            platform::Icon::Warning,
            "This option should only be used if you have forgotten your password, or if an adversary\n\n"
            "has managed to corrupt vital files neccessary for Corvalence to function properly.\n\n"
            "If you just want to change your password select the 'Change Password' menu item within "
            "Corvalence.\n\n"
            "If you continue your password will be reset but your Corvalence database files, backup files "
            "and log "
            "files will become inaccessible.\n\n"
            "Are you sure you would like to reset Corvalence.")) {
        return false;
    }
    for (const SealedFileRow& row : kSealedFiles) {
        empty(platform.files, configuration.folder(row.folderKey) + std::string(row.name));
    }
    const std::string guard = configuration.folder(key::kInstallDirectory) + "Permissions";
    if (platform.files.status(guard, platform::Follow::No)) platform.files.remove(guard);
    store::RecentList::empty(configuration);
    // Last: ended before this, all that was begun is carried on, and the installation is whole as it was.
    working.dropPending();
    tellUncleared(platform, working);
    return true;
}

}  // namespace corvalence::core
