#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "crypto/sealed_stream.h"
#include "files/backup_index.h"
#include "files/file_digest.h"
#include "files/own_files.h"
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
    /// missing container shows its message and is made anew; one that has lost its list is set aside and
    /// told. Throws base::FileFailure, BackupDamaged.
    BackupAppender(store::Vault& vault, const store::OpenDatabaseContext& context, bool sealed);
    ~BackupAppender();
    BackupAppender(const BackupAppender&) = delete;
    BackupAppender& operator=(const BackupAppender&) = delete;

    /// The present content of a file, if it still has this digest. An empty text on success, else why nothing
    /// was added; nothing at all where the user cancelled. Throws base::FileFailure where the container
    /// cannot even be brought back to where it was.
    std::optional<std::string> add(const std::string& path, const std::string& digest, FileDigester& digester,
                                   ByteProgress& progress);

    /// One file: begin, its bytes, then end or drop.
    void begin();
    void write(base::ByteView bytes);
    void end(const std::string& path, std::uint64_t originalSize);
    void drop();

    /// Flushes the container and seals the index with the new entries. More may follow, and another commit.
    void commit();

    /// Whether the list held an entry of this path when it was read.
    bool hasEntry(const std::string& path) const { return !index_.find(path).empty(); }
    /// Number of entries that the list held then: that of the first new one.
    std::size_t firstNew() const noexcept { return index_.size(); }

  private:
    std::optional<std::string> append(const std::string& path, const std::string& digest,
                                      FileDigester& digester, ByteProgress& progress);
    void setOrphanAside(const store::OpenDatabaseContext& context);

    store::Vault& vault_;
    store::BackupPair pair_;
    bool sealed_;
    BackupIndex index_;
    crypto::ChainValue chain_;
    std::optional<OwnFiles> own_;
    std::unique_ptr<platform::File> container_;
    std::unique_ptr<crypto::SealWriter> writer_;  // none where stretches are plain
    bool fileIsOpen_ = false;
    crypto::SecretText newLines_;
    std::uint64_t end_;
    std::uint64_t plainWritten_ = 0;
    std::uint64_t committed_;
};

/// How far an extraction came. Broken: the container ends early, or the entry's lengths do not fit.
enum class Extraction { Whole, Broken, Cancelled };

/// Copies what a backup entry holds to `sink`, unsealed where it is sealed; asks for Cancel before every
/// block. Throws base::FileFailure where the container cannot be read.
Extraction extractBackupData(store::Vault& vault, const store::BackupPair& pair, platform::File& container,
                             const BackupIndexEntry& entry, ByteProgress& progress,
                             const FileDigester::Sink& sink);

}  // namespace corvalence::files
