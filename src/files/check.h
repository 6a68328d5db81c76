#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "files/changed_file_details.h"
#include "files/database_copy.h"
#include "files/restore.h"
#include "store/open_database.h"

namespace corvalence::files {

/// The counters of one check.
struct CheckCounts {
    std::uint32_t listed = 0;
    std::uint32_t checked = 0;
    std::uint32_t unchecked = 0;
    std::uint32_t changed = 0;
    std::uint32_t identical = 0;
    bool cancelled = false;
};

/// What the dialog "Checking Summary." shows.
struct CheckSummary {
    std::string database;
    std::string checkedAt;  // local time
    CheckCounts counts;
    /// Why the backup database is not up to date; empty where it is, or where there is none to be.
    std::string backupFailure;
};

/// Asked about every changed file.
class ChangedFileDetailsDialog {
  public:
    virtual ~ChangedFileDetailsDialog() = default;
    virtual Reaction show(const ChangedFileDetails& details) = 0;
    /// Asked when the answer was to restore; nothing where the user went back on it.
    virtual std::optional<RestoreChoice> showRestore(const std::string& path) = 0;
    /// Whether a person answers. An answer by a person is told by message boxes and sealed at once; answers
    /// that were fixed beforehand are collected, and sealed at the end and every few seconds.
    virtual bool attended() const = 0;
    /// Whether the warning sound is played for each changed file.
    virtual bool warnsOfEach() const { return true; }
};

/// The same answer for every changed file, given beforehand.
class FixedReaction : public ChangedFileDetailsDialog {
  public:
    FixedReaction(Reaction reaction, RestoreChoice changedFile, bool warnsOfEach = true)
        : reaction_(reaction), changedFile_(changedFile), warnsOfEach_(warnsOfEach) {}

    Reaction show(const ChangedFileDetails&) override { return reaction_; }
    std::optional<RestoreChoice> showRestore(const std::string&) override { return changedFile_; }
    bool attended() const override { return false; }
    bool warnsOfEach() const override { return warnsOfEach_; }

  private:
    Reaction reaction_;
    RestoreChoice changedFile_;
    bool warnsOfEach_;
};

/// Told what a check finds, in the order of the records.
class CheckObserver {
  public:
    virtual ~CheckObserver() = default;
    virtual void unchecked(const std::string& path, const std::string& reason) = 0;
    /// `done`: whether an update or a restore came about; `message` says more, also of a failure.
    virtual void changed(const ChangedFileDetails& details, Reaction reaction, bool done,
                         const std::string& message) = 0;
    /// Something about a file that was already told: its new backup could not be made, where its old self
    /// went.
    virtual void note(const std::string& path, const std::string& text) = 0;
};

/// Checks the files of a File Contents database against their records. Only the digest decides whether a file
/// changed; what cannot be read is unchecked, never changed.
class FileContentsCheck {
  public:
    FileContentsCheck(store::Vault& vault, store::OpenDatabaseContext& context,
                      ChangedFileDetailsDialog& dialog, CheckObserver& observer);

    /// Runs the check to its end or until the user cancels, and stamps the database as checked in either
    /// case. Throws DatabaseChanged before any file is looked at, base::FileFailure where the database itself
    /// fails.
    CheckSummary checkAllFiles();
    /// The same within work that is shown already.
    CheckSummary checkAllFiles(platform::Progress& progress);

    /// As they stand while the check goes on; all but `changed` and `unchecked` come at its end.
    const CheckCounts& counts() const noexcept { return counts_; }

  private:
    struct Totals {
        std::uint32_t records = 0;
        std::uint64_t bytes = 0;
    };

    Totals countRecords();
    /// False where the user cancelled before the record was judged.
    bool checkRecord(std::string_view line, ByteProgress& progress);
    void tellUnchecked(const std::string& path, std::string_view reason);
    void handleChanged(const FileRecord& then, const std::string& digest, const platform::FileStatus& now);
    ChangedFileDetails describe(const FileRecord& then, const std::string& digest,
                                const platform::FileStatus& now);
    void restore(const ChangedFileDetails& details);
    void update(const ChangedFileDetails& details, Reaction reaction);
    struct NewBackup {
        bool made = false;
        std::string failure;  // why the record has to stay as well
    };
    /// Appends the file's present content to the backups.
    NewBackup backUp(const ChangedFileDetails& details);
    void walk(std::uint64_t remaining, ByteProgress& progress);
    void saveIfDue();
    void saveUpdates();
    void sealUpdates();
    void compactBackups();

    store::Vault& vault_;
    store::OpenDatabaseContext& context_;
    ChangedFileDetailsDialog& dialog_;
    CheckObserver& observer_;
    DatabaseCopy copy_;
    FileDigester digester_;
    FileRestore restore_;
    std::string indexPath_;
    platform::Progress* progress_ = nullptr;
    CheckCounts counts_;
    std::uint32_t judged_ = 0;
    std::string backupFailure_;

    // Updates: the new records stand behind the text of the working copy, and the lines that they replace, by
    // their numbers, are left out wherever the database is sealed from it. A new backup is appended and its
    // list sealed before the record that goes with it; the old one goes at the end.
    std::size_t line_ = 0;
    std::vector<bool> updated_;
    std::uint64_t saved_ = 0;  // bytes of the appended records that are sealed
    bool saveFailed_ = false;
    std::unique_ptr<BackupAppender> appender_;
    std::optional<std::size_t> firstNewBackup_;
    std::chrono::milliseconds savedAt_{0};
    std::chrono::milliseconds saveTook_{0};
};

}  // namespace corvalence::files
