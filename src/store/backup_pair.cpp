#include "store/backup_pair.h"

#include <algorithm>

#include "base/number_text.h"

namespace corvalence::store {

namespace {

constexpr std::string_view kFileName = "Backup File ";
constexpr std::string_view kIndexName = "Backup Index ";

}  // namespace

BackupPair backupPair(const settings::Configuration& configuration, std::int64_t number) {
    const std::string folder = configuration.folder(settings::key::kBackupFilesDirectory);
    const std::string digits = std::to_string(number);
    return {folder + std::string(kFileName) + digits, folder + std::string(kIndexName) + digits};
}

void createBackupPair(Vault& vault, std::int64_t number) {
    const BackupPair pair = backupPair(vault.configuration, number);
    vault.platform.files.createNew(pair.file);
    vault.platform.files.createNew(pair.index);
}

void removeBackupPair(Vault& vault, std::int64_t number) {
    const BackupPair pair = backupPair(vault.configuration, number);
    for (const std::string& path : {pair.index, pair.file}) {
        if (vault.platform.files.status(path, platform::Follow::No)) vault.platform.files.remove(path);
    }
}

bool isSetAside(std::string_view name) noexcept {
    return name.starts_with(kFileName) && name.find(kSetAsideSuffix) != std::string_view::npos;
}

std::int64_t highestBackupPair(Vault& vault) {
    std::int64_t highest = 0;
    const std::string folder = vault.configuration.folder(settings::key::kBackupFilesDirectory);
    for (const platform::FolderEntry& entry : vault.platform.files.list(folder)) {
        for (const std::string_view stem : {kFileName, kIndexName}) {
            if (!entry.name.starts_with(stem)) continue;
            const std::string_view digits = std::string_view(entry.name).substr(stem.size());
            const auto number = base::scanInteger(digits);
            // What bears more than a number is no pair's file.
            if (number && *number < INT32_MAX && std::to_string(*number) == digits)
                highest = std::max(highest, *number);
        }
    }
    return highest;
}

}  // namespace corvalence::store
