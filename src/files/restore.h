#pragma once

#include <optional>
#include <string>
#include <vector>

#include "files/backup_store.h"
#include "files/file_record.h"

namespace corvalence::files {

/// What becomes of the changed file when the original is put back.
enum class RestoreChoice { DeleteChangedFile = 0, MoveChangedFile = 1 };

struct RestoreResult {
    bool restored = false;
    bool cancelled = false;  // everything is then as it was
    /// "<path> successfully restored.", or why not.
    std::string message;
    /// What the user has to know beside it, a sentence each.
    std::vector<std::string> notes;
    /// Where the changed file lies now, if it was moved and is not back.
    std::string movedTo;
};

/// Puts files of one database back from their backups. The list of backups is unsealed once for all of them.
class FileRestore {
  public:
    FileRestore(store::Vault& vault, const store::OpenDatabaseContext& context)
        : vault_(vault), context_(context) {}

    /// Puts back the content that the record describes. The backup is copied to a candidate beside the file,
    /// whose digest is tested before it touches anything; the candidate takes owner, rights and extended
    /// attributes of the changed file and is renamed over it. Links on the way are followed only where they
    /// belong to the administrator or the caller. Never throws for what concerns this one file: the result
    /// says it.
    RestoreResult restoreFile(const FileRecord& record, RestoreChoice choice);

    /// The list of backups is to be read anew: entries were added or replaced.
    void backupsChanged() {
        index_.reset();
        own_.reset();
    }

  private:
    RestoreResult restoreIn(const FileRecord& record, RestoreChoice choice,
                            const platform::PinnedFolder& folder, const std::string& name);
    /// Broken where no backup has the record's digest.
    Extraction extract(const FileRecord& record, platform::File& candidate, platform::Progress& progress);
    /// False where the user cancelled.
    bool moveChanged(const std::string& path, const std::string& name, platform::Progress& progress,
                     RestoreResult& result);
    std::string changedPath(const std::string& name, int number) const;
    /// Better the changed file in its place than none.
    void putChangedBack(const std::string& path, RestoreResult& result);
    std::string candidateRefused(const std::string& path, const base::FileFailure& failure);

    store::Vault& vault_;
    const store::OpenDatabaseContext& context_;
    std::optional<BackupIndex> index_;
    std::optional<OwnFiles> own_;  // listed once for all files that are restored
};

}  // namespace corvalence::files
