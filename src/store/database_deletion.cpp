#include "store/database_deletion.h"

#include "crypto/wipe.h"
#include "store/backup_database.h"
#include "store/backup_pair.h"
#include "store/database_index.h"

namespace corvalence::store {

bool deleteDatabase(Vault& vault, const OpenDatabaseContext& context, DeletionListener& listener) {
    platform::Platform& system = vault.platform;
    if (!system.ui.ask(
            platform::Icon::Warning,
            "Are you sure you would like to delete this database, its backup, and the backups of the "
            "files listed within it?")) {
        return false;
    }
    const std::string& path = context.path();
    const std::string backup = backupDatabasePath(path, vault.configuration, system.paths);
    DatabaseIndex(vault).removeRecord(path);
    removeBackupPair(vault, context.backupNumber());
    listener.databaseDeleted(path);
    for (const std::string& file : {path, backup}) {
        const auto status = system.files.status(file, platform::Follow::No);
        if (status && status->kind == platform::FileKind::Regular) crypto::wipeFile(system.files, file);
    }
    system.ui.message(
        platform::Icon::Information,
        path + ", its backup, and the backups of the files listed within it successfully deleted.");
    return true;
}

}  // namespace corvalence::store
