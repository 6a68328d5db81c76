#include "files/restore.h"

#include <algorithm>

#include "crypto/digester.h"
#include "files/own_status.h"
#include "platform/file_copy.h"

namespace corvalence::files {

namespace {

constexpr std::string_view kCandidateSuffix = ".987654321z";
constexpr std::string_view kChangedSuffix = ".CHANGED";
constexpr std::string_view kCopySuffix = ".987654321c";
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

RestoreResult cancelled(const std::string& path) {
    RestoreResult result = refused("The restoration of " + path + " was cancelled.");
    result.cancelled = true;
    return result;
}

/// The changed file under a second name. It never leaves its place before the restored one takes it.
class SecondName {
  public:
    enum class Given { Yes, NameTaken, Cancelled };

    SecondName(store::Vault& vault, const std::string& path, platform::Progress& progress)
        : vault_(vault), path_(path), progress_(progress) {}

    Given give(const std::string& target) {
        platform::FileSystem& files = vault_.platform.files;
        if (files.status(target, platform::Follow::No)) return Given::NameTaken;
        if (!copy_) {
            // File systems that keep one name a file get a copy, as do two volumes.
            try {
                return files.linkNew(path_, target) ? Given::Yes : Given::NameTaken;
            } catch (const base::FileFailure& failure) {
                if (failure.cause() == base::Cause::DiskFull) throw;
            }
            if (!copyBeside(target)) return Given::Cancelled;
        }
        if (!files.renameNew(copy_->path(), target)) return Given::NameTaken;
        copy_->release();
        return Given::Yes;
    }

  private:
    bool copyBeside(const std::string& target) {
        copy_.emplace(vault_.working.createPlain(target, kCopySuffix));
        const auto source = vault_.platform.files.openShared(path_);
        if (!platform::copyBytes(*source, copy_->file(), source->size(), progress_)) return false;
        vault_.platform.access.copyProtection(path_, copy_->file());
        copy_->close();
        return true;
    }

    store::Vault& vault_;
    const std::string& path_;
    platform::Progress& progress_;
    std::optional<crypto::TemporaryFile> copy_;
};

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
    const auto progress = system.ui.openProgress("Restoring File...");
    const Extraction extraction = extract(record, candidate->file(), *progress);
    if (extraction == Extraction::Cancelled) return cancelled(record.path);
    if (extraction == Extraction::Broken)
        return refused("The backup file has also been modified!\n\nBackup file not restored.");
    RestoreResult result;
    const std::string path = folder.path() + name;
    const auto present = system.files.status(path, platform::Follow::No);
    if (present && present->kind != platform::FileKind::Regular) {
        // A folder or a pipe that took the file's place is not ours to move or replace.
        throw base::FileFailure(base::Cause::InvalidFile, 0, record.path);
    }
    if (!own_) own_.emplace(OwnFiles::ofInstallation(vault_, context_));
    if (present && own_->has(present->identity)) {
        // Reached by a link: to write there would cost all backups, or the index.
        throw base::FileFailure(base::Cause::AccessDenied, 0, record.path);
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
    if (present && choice == RestoreChoice::MoveChangedFile && !moveChanged(path, name, *progress, result))
        return cancelled(record.path);
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

Extraction FileRestore::extract(const FileRecord& record, platform::File& candidate,
                                platform::Progress& progress) {
    const store::BackupPair pair = store::backupPair(vault_.configuration, context_.backupNumber());
    const auto container = vault_.platform.files.openShared(pair.file);
    const auto entries = index_->find(record.path);
    // The last entry is the latest. An earlier one serves where a run was ended between backup and record.
    for (auto number = entries.rbegin(); number != entries.rend(); ++number) {
        const BackupIndexEntry entry = index_->entry(*number);
        const OwnStatus status(vault_.platform.ui, entry.sealed ? "Processing..." : "Restoring File...");
        candidate.resize(0);
        candidate.seek(0);
        crypto::Digester digester(context_.digest());
        ByteProgress bytes(progress, entry.plainLength().value_or(0));
        const auto sink = [&](base::ByteView plain) {
            digester.update(plain);
            candidate.write(plain);
        };
        const Extraction extraction = extractBackupData(vault_, pair, *container, entry, bytes, sink);
        if (extraction == Extraction::Cancelled) return extraction;
        if (extraction == Extraction::Whole && digester.finish() == record.digest) return extraction;
    }
    return Extraction::Broken;
}

std::string FileRestore::changedPath(const std::string& name, int number) const {
    const std::string suffix = std::string(kChangedSuffix) + (number == 0 ? "" : std::to_string(number));
    const std::size_t room = vault_.platform.files.nameLimit() - suffix.size();
    std::size_t length = std::min(name.size(), room);
    // A name that has to be cut is cut between two characters.
    const auto isInside = [&] { return length < name.size() && (name[length] & 0xC0) == 0x80; };
    while (length > 0 && isInside())
        --length;
    return vault_.configuration.folder(settings::key::kChangedFilesDirectory) + name.substr(0, length) +
           suffix;
}

bool FileRestore::moveChanged(const std::string& path, const std::string& name, platform::Progress& progress,
                              RestoreResult& result) {
    SecondName second(vault_, path, progress);
    for (int number = 0; number <= kMostChangedNames; ++number) {
        const std::string target = changedPath(name, number);
        const SecondName::Given given = second.give(target);
        if (given == SecondName::Given::Cancelled) return false;
        if (given == SecondName::Given::NameTaken) continue;
        result.movedTo = target;
        return true;
    }
    result.notes.push_back(
        "The changed file could not be moved, as all names for it are taken, and was deleted.");
    return true;
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

}  // namespace corvalence::files
