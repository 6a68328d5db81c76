#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "crypto/sealed_stream.h"
#include "files/backup_index.h"
#include "files/file_digest.h"
#include "store/open_database.h"

namespace corvalence::files {

/// The message about a missing container.
inline constexpr std::string_view kBackupFileMissing =
    "The backup file associated with this database does not exist!\n\nCorvalence will try to repair the "
    "problem.";

/// Makes an empty file in the place of each of the pair that is gone. False where something was.
bool repairBackupPair(store::Vault& vault, const store::BackupPair& pair);

/// Adds stretches at the end of a database's container. The index is sealed once, by commit(); until then the
/// container's new end belongs to nobody, and going without a commit cuts it off again.
class BackupAppender {
  public:
    /// Brings the container to the sum of the stored lengths: a longer one was left by a run that was ended
    /// by force, a shorter one is damaged and filled with zeros, which the digests of its files will tell. A
    /// missing container shows its message and is made anew. Throws base::FileFailure, BackupDamaged.
    BackupAppender(store::Vault& vault, const store::OpenDatabaseContext& context, bool sealed);
    ~BackupAppender();
    BackupAppender(const BackupAppender&) = delete;
    BackupAppender& operator=(const BackupAppender&) = delete;

    /// One file: begin, its bytes, then end or drop.
    void begin();
    void write(base::ByteView bytes);
    void end(const std::string& path, std::uint64_t originalSize);
    void drop();

    /// Flushes the container and seals the index with the new entries.
    void commit();

  private:
    store::Vault& vault_;
    store::BackupPair pair_;
    bool sealed_;
    BackupIndex index_;
    crypto::ChainValue chain_;
    std::unique_ptr<platform::File> container_;
    std::unique_ptr<crypto::SealWriter> writer_;  // none where stretches are plain
    bool fileIsOpen_ = false;
    crypto::SecretText newLines_;
    std::uint64_t end_;
    std::uint64_t plainWritten_ = 0;
    std::uint64_t committed_;
};

/// A file whose present content is to become its backup, and the digest that this content must have.
struct BackupReplacement {
    std::string path;
    std::string digest;
};

/// Puts the present content of files in the place of their backups, keeping each entry's place in the order;
/// further entries of the same path go, and a path without one gets its entry at the end. Container and index
/// are written anew beside the old ones in one pass and renamed together. A file that can no longer be read,
/// or has another digest by now, keeps its old backup; its path and the reason are returned. Not to be
/// cancelled: the records that go with the new backups are sealed already. Throws base::FileFailure,
/// BackupDamaged.
struct ReplacementFailure {
    std::string path;
    std::string reason;
};
std::vector<ReplacementFailure> replaceBackupEntries(store::Vault& vault,
                                                     const store::OpenDatabaseContext& context,
                                                     const std::vector<BackupReplacement>& replacements,
                                                     platform::Progress& progress);

/// Copies what a backup entry holds to `sink`, unsealed where it is sealed. False where the container ends
/// early or the entry's lengths do not fit.
bool extractBackupData(store::Vault& vault, const store::BackupPair& pair, platform::File& container,
                       const BackupIndexEntry& entry, const FileDigester::Sink& sink);

}  // namespace corvalence::files
