#include "files/restore.h"

#include "crypto/digester.h"
#include "platform/file_copy.h"

namespace corvalence::files {

namespace {

constexpr std::string_view kCandidateSuffix = ".987654321z";
constexpr std::string_view kChangedSuffix = ".CHANGED";
constexpr int kMostChangedNames = 10000;

std::string couldNotRestore(const std::string& path) {
    return "Couldn't restore " + path + " at this time.";
}

std::string withReason(const std::string& text, const base::FileFailure& failure) {
    return text + "\nReason: " + std::string(failure.reason());
}

RestoreResult refused(std::string message) {
    RestoreResult result;
    result.message = std::move(message);
    return result;
}

}  // namespace

RestoreResult FileRestore::restoreFile(const FileRecord& record, RestoreChoice choice) {
    try {
        const store::BackupPair pair = store::backupPair(vault_.configuration, context_.backupNumber());
        if (!repairBackupPair(vault_, pair)) return refused(std::string(kBackupFileMissing));
        if (!index_) index_.emplace(vault_, pair);
        if (index_->find(record.path).empty()) {
            return refused(
                record.path +
                " was not backed up. To enable restoration in future, change your settings with the "
                "'Configuration' menu.");
        }
        std::string name;
        const auto folder = vault_.platform.access.pinFolderOf(record.path, name);
        return restoreIn(record, choice, *folder, name);
    } catch (const BackupDamaged& failure) {
        return refused(failure.what());
    } catch (const base::FileFailure& failure) {
        return refused(withReason(couldNotRestore(record.path), failure));
    }
}

RestoreResult FileRestore::restoreIn(const FileRecord& record, RestoreChoice choice,
                                     const platform::PinnedFolder& folder, const std::string& name) {
    platform::Platform& system = vault_.platform;
    std::optional<crypto::TemporaryFile> candidate;
    try {
        candidate.emplace(
            vault_.working.createPlain(folder.resolvedPath() + name, kCandidateSuffix, folder.path()));
    } catch (const base::FileFailure& failure) {
        return refused(candidateRefused(record.path, failure));
    }
    if (extract(record, candidate->file()) == Extraction::Modified) {
        return refused("The backup file has also been modified!\n\nBackup file not restored.");
    }
    RestoreResult result;
    const std::string path = folder.path() + name;
    const auto present = system.files.status(path, platform::Follow::No);
    if (present && present->kind != platform::FileKind::Regular) {
        // A folder or a pipe that took the file's place is not ours to move or replace.
        throw base::FileFailure(base::Cause::InvalidFile, 0, record.path);
    }
    if (present) {
        system.access.copyProtection(path, candidate->file());
    } else {
        result.notes.push_back(record.path +
                               " was missing. Its owner and rights are not recorded, and the restored file "
                               "belongs to this program's user alone.");
    }
    system.access.setAttributes(candidate->file(), record.attributes);
    candidate->close();
    if (present && choice == RestoreChoice::MoveChangedFile && !moveChanged(path, name, result)) {
        result.notes.push_back(
            "The changed file could not be moved, as all names for it are taken, and was deleted.");
    }
    try {
        candidate->keepAs(path);
    } catch (const base::FileFailure& failure) {
        putChangedBack(path, result);
        result.message = withReason(couldNotRestore(record.path), failure);
        return result;
    }
    result.restored = true;
    result.message = record.path + " successfully restored.";
    return result;
}

std::string FileRestore::candidateRefused(const std::string& path, const base::FileFailure& failure) {
    if (dynamic_cast<const crypto::NameTaken*>(&failure) != nullptr) return failure.what();
    const std::string root = vault_.platform.volumes.rootOf(path);
    switch (vault_.platform.volumes.driveType(root)) {
        case platform::DriveType::Removable:
            return "There is no media in " + root;
        case platform::DriveType::Optical:
            return "Corvalence cannot restore a file to an optical drive.";
        case platform::DriveType::Remote:
            return root + " is on an unaccessable network drive.";
        default:
            return withReason(couldNotRestore(path), failure);
    }
}

FileRestore::Extraction FileRestore::extract(const FileRecord& record, platform::File& candidate) {
    const store::BackupPair pair = store::backupPair(vault_.configuration, context_.backupNumber());
    const auto container = vault_.platform.files.openShared(pair.file);
    const auto entries = index_->find(record.path);
    // The last entry is the latest. An earlier one serves where a run was ended between backup and record.
    for (auto number = entries.rbegin(); number != entries.rend(); ++number) {
        candidate.resize(0);
        candidate.seek(0);
        crypto::Digester digester(context_.digest());
        const bool whole =
            extractBackupData(vault_, pair, *container, index_->entry(*number), [&](base::ByteView bytes) {
                digester.update(bytes);
                candidate.write(bytes);
            });
        if (whole && digester.finish() == record.digest) return Extraction::Good;
    }
    return Extraction::Modified;
}

bool FileRestore::moveChanged(const std::string& path, const std::string& name, RestoreResult& result) {
    const std::string target = vault_.configuration.folder(settings::key::kChangedFilesDirectory) + name +
                               std::string(kChangedSuffix);
    for (int number = 0; number <= kMostChangedNames; ++number) {
        const std::string numbered = number == 0 ? target : target + std::to_string(number);
        if (!moveTo(path, numbered)) continue;
        result.movedTo = numbered;
        return true;
    }
    return false;
}

void FileRestore::putChangedBack(const std::string& path, RestoreResult& result) {
    if (result.movedTo.empty()) return;
    platform::FileSystem& files = vault_.platform.files;
    try {
        if (files.status(path, platform::Follow::No)) {
            files.remove(result.movedTo);  // a copy on another volume: the file itself never went
        } else if (!files.renameNew(result.movedTo, path)) {
            return;
        }
        result.movedTo.clear();
    } catch (const base::FileFailure&) {
        // Then the result tells where it lies.
    }
}

bool FileRestore::moveTo(const std::string& path, const std::string& target) {
    platform::FileSystem& files = vault_.platform.files;
    if (files.status(target, platform::Follow::No)) return false;
    // A second name first: the file never leaves its place before the restored one takes it. File systems
    // that keep one name a file get a copy, as do two volumes.
    try {
        return files.linkNew(path, target);
    } catch (const base::FileFailure& failure) {
        if (failure.cause() == base::Cause::DiskFull) throw;
    }
    std::unique_ptr<platform::File> copy;
    try {
        copy = files.createNew(target);
    } catch (const base::FileFailure& failure) {
        if (files.isNameTaken(failure)) return false;
        throw;
    }
    try {
        const auto source = files.openShared(path);
        platform::copyBytes(*source, *copy, source->size());
        vault_.platform.access.copyProtection(path, *copy);
        copy->flush();
    } catch (...) {
        copy.reset();
        platform::removeQuietly(files, target);
        throw;
    }
    // The file at `path` need not be removed: the restored one is renamed over it.
    return true;
}

}  // namespace corvalence::files
