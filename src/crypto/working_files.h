#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/path_rules.h"
#include "platform/file_system.h"

namespace corvalence::crypto {

class WorkingFiles;

/// Suffix of the plain working copy of a database, behind its name.
inline constexpr std::string_view kDatabaseCopySuffix = ".123456789z";

/// A file of somebody else stands where a temporary has to go. It is never touched.
class NameTaken : public base::FileFailure {
  public:
    explicit NameTaken(const std::string& path);
};

/// Moves that are committed, or may be, and that could not all be carried out. They are before the next
/// temporary of this run is made, or by the next start.
class MovesPending : public base::FileFailure {
  public:
    explicit MovesPending(const base::FileFailure& failure);
};

/// A file that this program made for the length of an operation. However the operation is left, a plain one
/// is wiped and a sealed one removed, unless it was kept.
class TemporaryFile {
  public:
    ~TemporaryFile();
    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&&) = delete;

    platform::File& file() noexcept { return *file_; }
    const std::string& path() const noexcept { return path_; }

    /// Flushes, closes and renames over `target`. The file is then no longer a temporary.
    void keepAs(const std::string& target);
    /// The same, but the journal keeps its line until release(): for a save that has a step to come.
    void moveTo(const std::string& target);
    /// Flushes, and closes what is not plain; the file stays a temporary. For commitMoves() and for renames
    /// by other routes.
    void close();
    /// Ends the file now. Unlike the destructor it reports a failure.
    void discard();
    /// Nothing is to be done any more: the file has gone its way under another name.
    void release() noexcept;
    /// Leaves file and journal line as they are, for the next start to decide.
    void abandon() noexcept;

  private:
    friend class WorkingFiles;
    TemporaryFile(WorkingFiles& owner, std::unique_ptr<platform::File> file, std::string path,
                  std::string recordedAs, bool plain);

    WorkingFiles* owner_;
    std::unique_ptr<platform::File> file_;
    std::string path_;        // by which it is reached
    std::string recordedAs_;  // its name in the journal
    platform::FileIdentity identity_;
    bool plain_;
    bool moved_ = false;
};

/// A save that a run which was ended by force had begun.
struct PendingSave {
    std::string beside;  // empty where it has been renamed over the database already
    std::string database;
};

/// A file of a database whose deletion a run that was ended by force had begun.
struct PendingDeletion {
    std::string file;
    std::string database;
    bool wipes = false;
};

/// Makes the temporaries of an installation and remembers them in a journal, so that the next start can clear
/// away what a killed run left, and nothing else: a file is touched only if it is the very file that was made
/// (by path, number and birth), never by its name alone.
///
/// One object serves a run, under the single-instance lock. All calls throw base::FileFailure.
class WorkingFiles {
  public:
    /// `journal` is created where it is missing.
    WorkingFiles(platform::FileSystem& files, const std::string& journal, const base::PathRules& paths = {});
    ~WorkingFiles();
    WorkingFiles(const WorkingFiles&) = delete;
    WorkingFiles& operator=(const WorkingFiles&) = delete;

    /// Wipes and removes what an earlier run left, and carries on renames that it had committed. To be called
    /// once, before any temporary is made. What needs the index to be judged stands in pendingSaves()
    /// afterwards.
    void clearLeftovers();
    /// What clearLeftovers() had to leave, with the reason; the next start tries again.
    const std::vector<std::string>& uncleared() const noexcept { return uncleared_; }
    const std::vector<PendingSave>& pendingSaves() const noexcept { return pendingSaves_; }
    /// To be carried out where the index no longer lists the database.
    const std::vector<PendingDeletion>& pendingDeletions() const noexcept { return pendingDeletions_; }
    /// Databases whose creation was not completed; to be taken back where the index lists them.
    const std::vector<std::string>& pendingCreations() const noexcept { return pendingCreations_; }
    /// All that was pending has been carried on or dropped.
    void pendingSettled() noexcept;

    /// Drops what an earlier run had begun: moves that it had committed, saves, deletions and creations. What
    /// it left is cleared away, and no later start carries any of it on. For an installation that is begun
    /// anew; to be called while no temporary is alive.
    void dropPending();

    /// A new file at `path` + `suffix` for plain data. A name too long for the file system is shortened to
    /// one that is the same every time. Throws NameTaken where something stands at that name; what this run
    /// itself could not end there is ended first, or its failure thrown again. `via`, where
    /// given, is a folder (with a closing separator) by which the file's folder is reached.
    TemporaryFile createPlain(const std::string& path, std::string_view suffix, const std::string& via = {});
    /// The same for sealed data.
    TemporaryFile createSealed(const std::string& path, std::string_view suffix);
    /// A sealed database beside `database`, which the next start completes or removes by the index.
    TemporaryFile createSave(const std::string& database);
    /// A new database at its own name, likewise.
    TemporaryFile createDatabase(const std::string& database);
    /// The name that createSave gives it.
    std::string savePath(const std::string& database) const;
    /// The name that a database's plain working copy gets.
    std::string copyPath(const std::string& database) const;

    /// Notes files that end together with a database's index record, before that record goes. Where a run is
    /// ended in between, the next start finds them in pendingDeletions(). `wipes`: to be overwritten first.
    /// False where there is no such file, and nothing was noted.
    bool noteDeletion(const std::string& database, const std::string& file, bool wipes);
    /// The file is gone, or is to stay after all.
    void deletionDone(const std::string& file) noexcept { finished(file); }

    /// Notes a database that is made in several steps, before its index record is. Where a run is ended
    /// before creationDone(), the next start finds it in pendingCreations().
    void noteCreation(const std::string& database);
    /// The database is whole, or gone; on the device when this returns.
    void creationDone(const std::string& database);

    /// Renames every file over its target such that after a crash either none or all of them are renamed, the
    /// latest at the next start. Throws MovesPending where that has begun and could not be ended; after any
    /// other failure no target was touched.
    void commitMoves(std::vector<std::pair<TemporaryFile, std::string>> moves);

    platform::FileSystem& files() noexcept { return files_; }

  private:
    friend class TemporaryFile;
    struct Leftover;

    TemporaryFile create(std::string_view kind, const std::string& path, std::string_view suffix,
                         const std::string& via, const std::string& target);
    std::string temporaryName(const std::string& path, std::string_view suffix) const;
    void record(std::initializer_list<std::string_view> fields);
    void recordMade(std::string_view kind, const std::string& path, const platform::FileIdentity& identity,
                    const std::string& target);
    void finished(const std::string& path) noexcept;
    void noteCommit();
    bool isCommitTakenBack() noexcept;
    void leaveBehind(const TemporaryFile& file) noexcept;
    bool endLeftBehind(const std::string& path);
    void carryOnMoves();
    bool isPending() const noexcept;
    std::vector<Leftover> readJournal();
    void clear(const Leftover& leftover);
    void clearMove(const Leftover& leftover, bool isThere);
    bool isFolderInUse(const std::string& path);

    platform::FileSystem& files_;
    base::PathRules paths_;
    std::unique_ptr<platform::File> journal_;
    std::size_t live_ = 0;
    struct LeftBehind {
        std::string path;
        std::string recordedAs;
        bool plain;
    };
    std::vector<LeftBehind> leftBehind_;  // by this run
    std::vector<PendingSave> pendingSaves_;
    std::vector<PendingDeletion> pendingDeletions_;
    std::vector<std::string> pendingCreations_;
    std::vector<std::string> uncleared_;
    std::vector<std::pair<std::string, std::string>> unfinishedMoves_;  // path, target
    std::uint64_t commitAt_ = 0;                                        // where the commit line stands
    bool isCommitNoted_ = true;
};

}  // namespace corvalence::crypto
