#include "store/database_opening.h"

#include "crypto/wipe.h"
#include "platform/file_copy.h"
#include "store/backup_database.h"
#include "store/database_deletion.h"
#include "store/database_digest.h"
#include "store/database_files.h"

namespace corvalence::store {

OpenResult DatabaseOpening::openWithRecovery(const std::string& path,
                                             std::optional<OpenDatabaseContext>& context) {
    platform::Platform& system = vault_.platform;
    const auto record = index_.findExact(path);
    if (!record) {
        system.ui.message(platform::Icon::Stop,
                          path + " is either a backup database or an old database that is no longer valid.");
        return OpenResult::NotListed;
    }
    OpenResult result = OpenResult::Opened;
    for (const SealedFileRecord& file : databaseFiles(vault_, *record)) {
        const OpenResult proved = prove(file);
        if (proved != OpenResult::Opened) result = proved;
        if (proved != OpenResult::Opened && proved != OpenResult::Restored) return proved;
    }
    system.ui.status(1, "Database File Integrity ");
    context = OpenDatabaseContext{*record};
    return result;
}

OpenResult DatabaseOpening::prove(const SealedFileRecord& file) {
    platform::Platform& system = vault_.platform;
    completeSave(file);
    if (!system.files.status(file.path, platform::Follow::Yes))
        return recover(file, file.path + " does not exist!");
    const std::string digest = shownDigest(file.path);
    if (digest.empty()) return OpenResult::Cancelled;
    if (digest == file.digest) {
        system.ui.status(0, "Database File Integrity Self Check...OK");
        return OpenResult::Opened;
    }
    system.ui.status(0, "Self check...Database File Changed!");
    return recover(file, file.path + " has been changed!");
}

/// Its window is gone before anything is said: in a message of work there would be something to cancel.
std::string DatabaseOpening::shownDigest(const std::string& path) {
    platform::Platform& system = vault_.platform;
    const auto progress = system.ui.openProgress("Database: " + std::string(system.paths.fileName(path)));
    std::string digest = digestFile(system.files, path, progress.get());
    if (!digest.empty()) progress->bar(platform::Progress::kSteps);
    return digest;
}

OpenResult DatabaseOpening::recover(const SealedFileRecord& record, const std::string& reason) {
    platform::Platform& system = vault_.platform;
    const std::string opening = "Database  " + record.path + " could not be opened. \n\nReason: ";
    if (!system.ui.ask(platform::Icon::Warning,
                       opening + reason + "\n\nWould you like to open the backup database? ")) {
        return OpenResult::Refused;
    }
    const std::string backup = backupDatabasePath(record.path, vault_.configuration, system.paths);
    if (!system.files.status(backup, platform::Follow::Yes)) {
        system.ui.message(platform::Icon::Stop, opening + backup + " could not be opened.");
        return OpenResult::Refused;
    }
    if (digestFile(system.files, backup) != record.digest) {
        system.ui.message(platform::Icon::Stop, opening + backup + " has also been changed!");
        return OpenResult::Refused;
    }
    auto copy = vault_.working.createSave(record.path);
    const auto source = system.files.openShared(backup);
    platform::copyBytes(*source, copy.file(), source->size());
    copy.keepAs(record.path);
    system.ui.message(platform::Icon::Information,
                      "The backup database is unchanged. Corvalence has restored the database from backup.");
    return OpenResult::Restored;
}

DatabaseOpening::State DatabaseOpening::state(const IndexRecord& record) {
    return state(databaseFiles(vault_, record));
}

DatabaseOpening::State DatabaseOpening::state(const std::vector<SealedFileRecord>& files) {
    State worst = State::Ok;
    for (const SealedFileRecord& file : files) {
        completeSave(file);
        if (!vault_.platform.files.status(file.path, platform::Follow::Yes)) return State::Missing;
        if (digestFile(vault_.platform.files, file.path) != file.digest) worst = State::Changed;
    }
    return worst;
}

void DatabaseOpening::completeSave(const SealedFileRecord& file) {
    platform::FileSystem& files = vault_.platform.files;
    const std::string beside = vault_.working.savePath(file.path);
    const auto status = files.status(beside, platform::Follow::No);
    if (!status || status->kind != platform::FileKind::Regular) return;
    if (digestFile(files, beside) == file.digest) files.rename(beside, file.path);
}

void DatabaseOpening::settlePending() {
    settlePendingSaves();
    settlePendingCreations();
    for (const crypto::PendingDeletion& deletion : vault_.working.pendingDeletions()) {
        if (index_.findExact(deletion.database)) continue;
        try {
            if (deletion.wipes) {
                crypto::wipeFile(vault_.platform.files, deletion.file);
            } else {
                vault_.platform.files.remove(deletion.file);
            }
        } catch (const base::FileFailure& failure) {
            // It belongs to nothing any more; that it stays must not keep every command out.
            vault_.platform.ui.message(
                platform::Icon::Warning,
                "A file of a deleted database could not be removed: " + std::string(failure.what()));
        }
    }
    vault_.working.pendingSettled();
}

void DatabaseOpening::settlePendingCreations() {
    for (const std::string& database : vault_.working.pendingCreations()) {
        const auto record = index_.findExact(database);
        if (!record) continue;
        takeBackDatabase(vault_, *record);
        vault_.platform.ui.message(
            platform::Icon::Warning,
            "The creation of " + database +
                " was not completed. What there was of the database has been removed.");
    }
}

void DatabaseOpening::settlePendingSaves() {
    platform::FileSystem& files = vault_.platform.files;
    for (const crypto::PendingSave& save : vault_.working.pendingSaves()) {
        const auto record = findDatabaseFile(vault_, save.database);
        if (!save.beside.empty()) {
            if (record && digestFile(files, save.beside) == record->digest) {
                if (save.beside != save.database) files.rename(save.beside, save.database);
            } else {
                files.remove(save.beside);
                continue;
            }
        }
        // The copy to the backup database is the last step of a save; it is made up for where the save had
        // come so far.
        const bool verifies = record && files.status(save.database, platform::Follow::Yes) &&
                              digestFile(files, save.database) == record->digest;
        if (!verifies) continue;
        try {
            writeBackupDatabase(vault_, save.database);
        } catch (const base::FileFailure& failure) {
            // The database itself is whole; a folder that is not there today must not keep every command out.
            vault_.platform.ui.message(platform::Icon::Warning, failure.what());
        }
    }
}

}  // namespace corvalence::store
