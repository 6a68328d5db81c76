#include "files/own_files.h"

#include <algorithm>

#include "crypto/sealed_file.h"
#include "store/backup_database.h"
#include "store/backup_pair.h"

namespace corvalence::files {

OwnFiles OwnFiles::ofDatabase(store::Vault& vault, const store::OpenDatabaseContext& context) {
    OwnFiles own(vault);
    const std::string root = vault.configuration.folder(settings::key::kInstallDirectory);
    const store::BackupPair pair = store::backupPair(vault.configuration, context.backupNumber());
    for (const std::string& path :
         {context.path(), vault.working.savePath(context.path()), vault.working.copyPath(context.path()),
          store::backupDatabasePath(context.path(), vault.configuration, vault.platform.paths), pair.file,
          pair.index, root + "lock", root + "Working Copies"}) {
        own.note(path);
    }
    return own;
}

OwnFiles OwnFiles::ofInstallation(store::Vault& vault, const store::OpenDatabaseContext& context) {
    OwnFiles own = ofDatabase(vault, context);
    for (const std::string_view key :
         {settings::key::kBackupFilesDirectory, settings::key::kScheduleDirectory}) {
        for (const platform::FolderEntry& entry : vault.platform.files.list(vault.configuration.folder(key)))
            own.identities_.push_back(entry.status.identity);
    }
    return own;
}

void OwnFiles::note(const std::string& path) {
    keys_.insert(paths_.comparisonKey(path));
    if (const auto status = files_.status(path, platform::Follow::Yes))
        identities_.push_back(status->identity);
}

bool OwnFiles::has(const platform::FileIdentity& identity) const {
    return std::find(identities_.begin(), identities_.end(), identity) != identities_.end();
}

}  // namespace corvalence::files
