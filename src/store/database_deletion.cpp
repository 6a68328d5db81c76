#include "store/database_deletion.h"

#include "crypto/wipe.h"
#include "store/backup_database.h"
#include "store/backup_pair.h"
#include "store/database_index.h"

namespace corvalence::store {

namespace {

/// Ends one file of a database that is being deleted. A link goes, what it leads to stays; so does a file
/// that holds something else.
void endFile(Vault& vault, const std::string& database, const std::string& file) {
    platform::Platform& system = vault.platform;
    const auto status = system.files.status(file, platform::Follow::No);
    if (!status) return;
    if (status->kind == platform::FileKind::Link) {
        system.files.remove(file);
        system.ui.message(platform::Icon::Warning,
                          file + " was a link. It is removed; the file that it led to is left as it was.");
    } else if (holdsDataOf(vault, database, file)) {
        crypto::wipeFile(system.files, file);
    } else {
        system.ui.message(platform::Icon::Warning,
                          file + " does not hold what this database wrote there, and is left as it is.");
    }
}

}  // namespace

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
    DatabaseIndex index(vault);
    const bool backupIsAnothers = findClaimant(vault, index.records(), path, backup).has_value();
    index.removeRecord(path);
    removeBackupPair(vault, context.backupNumber());
    listener.databaseDeleted(path);
    endFile(vault, path, path);
    if (!backupIsAnothers && !system.paths.equal(path, backup)) endFile(vault, path, backup);
    system.ui.message(
        platform::Icon::Information,
        path + ", its backup, and the backups of the files listed within it successfully deleted.");
    return true;
}

}  // namespace corvalence::store
