#include "store/database_opening.h"

#include "crypto/wipe.h"
#include "platform/file_copy.h"
#include "store/backup_database.h"
#include "store/database_digest.h"

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
    completeSave(*record, vault_.working.savePath(path));
    OpenResult result = OpenResult::Opened;
    if (!system.files.status(path, platform::Follow::Yes)) {
        result = recover(*record, path + " does not exist!");
    } else {
        const auto progress = system.ui.openProgress("Database: " + std::string(system.paths.fileName(path)));
        const std::string digest = digestFile(system.files, path, progress.get());
        if (digest.empty()) return OpenResult::Cancelled;
        progress->bar(platform::Progress::kSteps);
        if (digest == record->fileDigest) {
            system.ui.status(0, "Database File Integrity Self Check...OK");
        } else {
            system.ui.status(0, "Self check...Database File Changed!");
            result = recover(*record, path + " has been changed!");
        }
    }
    if (result == OpenResult::Opened || result == OpenResult::Restored) {
        system.ui.status(1, "Database File Integrity ");
        context = OpenDatabaseContext{*record};
    }
    return result;
}

OpenResult DatabaseOpening::recover(const IndexRecord& record, const std::string& reason) {
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
    if (digestFile(system.files, backup) != record.fileDigest) {
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
    completeSave(record, vault_.working.savePath(record.path));
    if (!vault_.platform.files.status(record.path, platform::Follow::Yes)) return State::Missing;
    return digestFile(vault_.platform.files, record.path) == record.fileDigest ? State::Ok : State::Changed;
}

void DatabaseOpening::completeSave(const IndexRecord& record, const std::string& beside) {
    platform::FileSystem& files = vault_.platform.files;
    const auto status = files.status(beside, platform::Follow::No);
    if (!status || status->kind != platform::FileKind::Regular) return;
    if (digestFile(files, beside) == record.fileDigest) files.rename(beside, record.path);
}

void DatabaseOpening::settlePending() {
    settlePendingSaves();
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

void DatabaseOpening::settlePendingSaves() {
    platform::FileSystem& files = vault_.platform.files;
    for (const crypto::PendingSave& save : vault_.working.pendingSaves()) {
        const auto record = index_.findExact(save.database);
        if (!save.beside.empty()) {
            if (record && digestFile(files, save.beside) == record->fileDigest) {
                if (save.beside != save.database) files.rename(save.beside, save.database);
            } else {
                files.remove(save.beside);
                continue;
            }
        }
        // The copy to the backup database is the last step of a save; it is made up for where the save had
        // come so far.
        const bool verifies = record && files.status(save.database, platform::Follow::Yes) &&
                              digestFile(files, save.database) == record->fileDigest;
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
