#include "crypto/working_files.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <new>
#include <utility>

#include "base/hex_text.h"
#include "base/record_text.h"
#include "crypto/md5.h"
#include "crypto/wipe.h"
#include "platform/file_copy.h"
#include "platform/line_reader.h"

namespace corvalence::crypto {

namespace {

// First field of a journal line.
constexpr std::string_view kIntent = "intent";  // a file is about to be made
constexpr std::string_view kPlain = "plain";
constexpr std::string_view kSealed = "sealed";
constexpr std::string_view kSave = "save";
constexpr std::string_view kMove = "move";  // to be renamed once the moves are committed
constexpr std::string_view kCommit = "commit";
constexpr std::string_view kDone = "done";

constexpr std::string_view kWipe = "wipe";          // goes with a database's index record, overwritten first
constexpr std::string_view kRemove = "remove";      // goes with it
constexpr std::string_view kCreation = "creation";  // of a database, not completed
constexpr std::string_view kSaveSuffix = ".123456789s";
// No file has this name: it keeps the line about a creation apart from those about the database's file.
constexpr std::string_view kCreationSuffix = ".123456789n";
constexpr std::size_t kJournalLineLimit = 16384;

std::uint64_t number(std::string_view text) noexcept {
    std::uint64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// Whether the file that stands at a journalled path is the one that was made there. The volume is left out:
/// its number may be another after a restart of the machine, and the path leads to the same volume.
bool isSameFile(const platform::FileIdentity& a, const platform::FileIdentity& b) noexcept {
    return a.number == b.number && a.birth == b.birth;
}

/// Ends every line: the beginning of the MD5 of what stands before it.
constexpr std::size_t kSumLength = 8;

std::string sumOf(std::string_view line) {
    return base::hexText(Md5::of(base::bytesOf(line))).substr(0, kSumLength);
}

}  // namespace

struct WorkingFiles::Leftover {
    std::string path;
    std::string kind;
    platform::FileIdentity identity;
    std::string target;
    bool committed = false;  // of a move
};

NameTaken::NameTaken(const std::string& path)
    : base::FileFailure(
          base::Cause::AccessDenied, path,
          path + " is in the way of a working file of that name. Move it elsewhere and try again.") {}

MovesPending::MovesPending(const base::FileFailure& failure)
    : base::FileFailure(failure.cause(), failure.path(),
                        std::string(failure.what()) + " The next start puts the new files in place.") {}

TemporaryFile::TemporaryFile(WorkingFiles& owner, std::unique_ptr<platform::File> file, std::string path,
                             std::string recordedAs, bool plain)
    : owner_(&owner),
      file_(std::move(file)),
      path_(std::move(path)),
      recordedAs_(std::move(recordedAs)),
      plain_(plain) {}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept
    : owner_(std::exchange(other.owner_, nullptr)),
      file_(std::move(other.file_)),
      path_(std::move(other.path_)),
      recordedAs_(std::move(other.recordedAs_)),
      identity_(other.identity_),
      plain_(other.plain_),
      moved_(other.moved_) {}

TemporaryFile::~TemporaryFile() {
    try {
        discard();
    } catch (const base::FileFailure&) {
        // The journal still names the file, so the next start ends it, if this run does not.
        owner_->leaveBehind(*this);
    }
}

void TemporaryFile::close() {
    if (!file_) return;
    file_->flush();
    // A plain one may have to be wiped yet, when its rights no longer let it be opened again.
    if (!plain_) file_.reset();
}

void TemporaryFile::keepAs(const std::string& target) {
    moveTo(target);
    release();
}

void TemporaryFile::moveTo(const std::string& target) {
    close();
    owner_->files_.rename(path_, target);
    moved_ = true;
}

void TemporaryFile::abandon() noexcept {
    owner_ = nullptr;
    file_.reset();
}

void TemporaryFile::release() noexcept {
    if (owner_ != nullptr) std::exchange(owner_, nullptr)->finished(recordedAs_);
    file_.reset();
}

void TemporaryFile::discard() {
    if (owner_ == nullptr) return;
    if (moved_) {
        release();
        return;
    }
    if (plain_) {
        if (!file_) file_ = owner_->files_.openExclusive(path_);
        overwriteFile(*file_);
    }
    file_.reset();
    owner_->files_.remove(path_);
    release();
}

WorkingFiles::WorkingFiles(platform::FileSystem& files, const std::string& journal,
                           const base::PathRules& paths)
    : files_(files), paths_(paths) {
    journal_ = files_.status(journal, platform::Follow::No) ? files_.openExclusive(journal)
                                                            : files_.createNew(journal);
}

WorkingFiles::~WorkingFiles() = default;

std::string WorkingFiles::temporaryName(const std::string& path, std::string_view suffix) const {
    const std::size_t folder = paths_.folder(path).size();
    if (path.size() - folder + suffix.size() <= files_.nameLimit()) return path + std::string(suffix);
    const std::string_view name = std::string_view(path).substr(folder);
    return path.substr(0, folder) + base::hexText(Md5::of(base::bytesOf(name))).substr(0, 16) +
           std::string(suffix);
}

std::string WorkingFiles::savePath(const std::string& database) const {
    return temporaryName(database, kSaveSuffix);
}

std::string WorkingFiles::copyPath(const std::string& database) const {
    return temporaryName(database, kDatabaseCopySuffix);
}

bool WorkingFiles::noteDeletion(const std::string& database, const std::string& file, bool wipes) {
    const auto status = files_.status(file, platform::Follow::No);
    if (!status) return false;
    recordMade(wipes ? kWipe : kRemove, file, status->identity, database);
    ++live_;
    journal_->flush();
    return true;
}

void WorkingFiles::noteCreation(const std::string& database) {
    recordMade(kCreation, database + std::string(kCreationSuffix), {}, database);
    ++live_;
    journal_->flush();
}

void WorkingFiles::creationDone(const std::string& database) {
    const std::string name = database + std::string(kCreationSuffix);
    // A lost line of another kind costs a temporary too many; this one would cost a whole database.
    record({kDone, name});
    journal_->flush();
    finished(name);
}

TemporaryFile WorkingFiles::createPlain(const std::string& path, std::string_view suffix,
                                        const std::string& via) {
    return create(kPlain, path, suffix, via, {});
}

TemporaryFile WorkingFiles::createSealed(const std::string& path, std::string_view suffix) {
    return create(kSealed, path, suffix, {}, {});
}

TemporaryFile WorkingFiles::createSave(const std::string& database) {
    return create(kSave, database, kSaveSuffix, {}, database);
}

TemporaryFile WorkingFiles::createDatabase(const std::string& database) {
    return create(kSave, database, {}, {}, database);
}

TemporaryFile WorkingFiles::create(std::string_view kind, const std::string& path, std::string_view suffix,
                                   const std::string& via, const std::string& target) {
    carryOnMoves();
    const std::string name = temporaryName(path, suffix);
    const std::string reached = via.empty() ? name : via + std::string(paths_.fileName(name));
    // Asked first, so that a file of the user's is never in the journal, not even as an intent.
    if (files_.status(reached, platform::Follow::No) && !endLeftBehind(reached)) throw NameTaken(name);
    record({kIntent, name});
    ++live_;
    std::unique_ptr<platform::File> file;
    try {
        file = files_.createNew(reached);
    } catch (...) {
        finished(name);
        throw;
    }
    TemporaryFile temporary(*this, std::move(file), reached, name, kind == kPlain);
    temporary.identity_ = temporary.file().status().identity;
    recordMade(kind, name, temporary.identity_, target);
    // Plain data must not reach the disk before the line that will have it wiped.
    journal_->flush();
    return temporary;
}

void WorkingFiles::leaveBehind(const TemporaryFile& file) noexcept {
    try {
        leftBehind_.push_back({file.path_, file.recordedAs_, file.plain_});
    } catch (const std::bad_alloc&) {
        // Then its name is taken until the next start.
    }
}

bool WorkingFiles::endLeftBehind(const std::string& path) {
    const auto found = std::find_if(leftBehind_.begin(), leftBehind_.end(),
                                    [&](const LeftBehind& file) { return file.path == path; });
    if (found == leftBehind_.end()) return false;
    if (found->plain) {
        wipeFile(files_, path);
    } else {
        files_.remove(path);
    }
    finished(found->recordedAs);
    leftBehind_.erase(found);
    return true;
}

void WorkingFiles::record(std::initializer_list<std::string_view> fields) {
    std::string line;
    for (const std::string_view field : fields)
        line.append(field).push_back(base::kSeparator);
    line += sumOf(line) + "\n";
    journal_->write(base::bytesOf(line));
}

void WorkingFiles::recordMade(std::string_view kind, const std::string& path,
                              const platform::FileIdentity& identity, const std::string& target) {
    record({kind, path, std::to_string(identity.volume), std::to_string(identity.number),
            std::to_string(identity.birth), target});
}

void WorkingFiles::finished(const std::string& path) noexcept {
    try {
        if (--live_ > 0) {
            record({kDone, path});
        } else {
            journal_->resize(0);
            journal_->seek(0);
        }
    } catch (const base::FileFailure&) {
        // A line too many does no harm: the file it names is gone, and another one there is not the one it
        // names.
    }
}

void WorkingFiles::noteCommit() {
    journal_->seek(commitAt_);
    record({kCommit});
    journal_->flush();
    isCommitNoted_ = true;
}

void WorkingFiles::commitMoves(std::vector<std::pair<TemporaryFile, std::string>> moves) {
    carryOnMoves();
    std::vector<std::pair<std::string, std::string>> pending;
    for (auto& [temporary, target] : moves) {
        temporary.close();
        recordMade(kMove, temporary.recordedAs_, temporary.identity_, target);
        pending.emplace_back(temporary.path(), target);
    }
    commitAt_ = journal_->size();
    unfinishedMoves_ = std::move(pending);
    isCommitNoted_ = false;
    try {
        noteCommit();
        for (auto& [temporary, target] : moves) {
            files_.rename(temporary.path(), target);
            temporary.release();
        }
        unfinishedMoves_.clear();
    } catch (const base::FileFailure& failure) {
        if (!isCommitNoted_ && isCommitTakenBack()) throw;
        for (auto& [temporary, target] : moves)
            temporary.abandon();
        throw MovesPending(failure);
    }
}

bool WorkingFiles::isCommitTakenBack() noexcept {
    try {
        journal_->resize(commitAt_);
        journal_->seek(commitAt_);
        journal_->flush();
        isCommitNoted_ = true;
        unfinishedMoves_.clear();
        return true;
    } catch (const base::FileFailure&) {
        return false;  // then nobody knows what the journal says, and all has to stay until it can be told
    }
}

void WorkingFiles::carryOnMoves() {
    if (unfinishedMoves_.empty()) return;
    if (!isCommitNoted_) noteCommit();
    while (!unfinishedMoves_.empty()) {
        const auto& [path, target] = unfinishedMoves_.front();
        if (files_.status(path, platform::Follow::No)) files_.rename(path, target);
        unfinishedMoves_.erase(unfinishedMoves_.begin());
    }
}

std::vector<WorkingFiles::Leftover> WorkingFiles::readJournal() {
    std::map<std::string, Leftover> leftovers;
    std::vector<std::string> order;
    std::vector<std::string> group;  // moves that the next line may commit
    journal_->seek(0);
    platform::LineReader reader(*journal_, kJournalLineLimit);
    for (std::string_view line; reader.next(line);) {
        if (line.back() != '\n') break;  // torn by the end of that run; what it announced was not done
        line.remove_suffix(1);
        // A damaged line may name the wrong file: then better a temporary too many than a file too few.
        if (line.size() < kSumLength ||
            sumOf(line.substr(0, line.size() - kSumLength)) != line.substr(line.size() - kSumLength))
            continue;
        const auto fields = base::splitFields(line.substr(0, line.size() - kSumLength));
        if (fields.size() == 1 && fields[0] == kCommit) {
            for (const std::string& moved : group)
                leftovers[moved].committed = true;
        }
        if (fields.empty() || fields[0] != kMove) group.clear();
        if (fields.size() < 2) continue;
        const std::string path(fields[1]);
        if (fields[0] == kMove) group.push_back(path);
        if (fields[0] == kDone) {
            leftovers.erase(path);
            continue;
        }
        Leftover& leftover = leftovers[path];
        leftover.path = path;
        leftover.kind = fields[0];
        leftover.committed = false;
        if (fields.size() >= 5) {
            leftover.identity = {number(fields[2]), number(fields[3]), number(fields[4])};
            leftover.target = fields.size() > 5 ? std::string(fields[5]) : std::string();
        }
        order.push_back(path);
    }
    std::vector<Leftover> result;
    for (const std::string& path : order) {
        if (auto node = leftovers.extract(path)) result.push_back(std::move(node.mapped()));
    }
    return result;
}

void WorkingFiles::dropPending() {
    const std::vector<Leftover> leftovers = readJournal();
    journal_->seek(journal_->size());
    // Behind a torn line the next one would be taken for its end.
    journal_->write(base::bytesOf("\n"));
    for (const Leftover& leftover : leftovers) {
        const bool isDatabase = leftover.kind == kSave && leftover.path == leftover.target;
        if ((leftover.kind == kMove || leftover.kind == kSave) && !isDatabase) {
            recordMade(kSealed, leftover.path, leftover.identity, {});  // to be removed
        } else if (leftover.kind != kIntent && leftover.kind != kPlain && leftover.kind != kSealed) {
            record({kDone, leftover.path});  // what has a name of its own stays
        }
    }
    journal_->flush();
    live_ = 0;
    pendingSaves_.clear();
    pendingDeletions_.clear();
    pendingCreations_.clear();
    uncleared_.clear();
    unfinishedMoves_.clear();
    isCommitNoted_ = true;
    clearLeftovers();
}

void WorkingFiles::clearLeftovers() {
    for (const Leftover& leftover : readJournal()) {
        try {
            clear(leftover);
        } catch (const base::FileFailure& failure) {
            // One file that cannot be cleared must not keep every command out.
            uncleared_.push_back(failure.what());
        }
    }
    if (!isPending() && uncleared_.empty()) {
        journal_->resize(0);
        journal_->seek(0);
        return;
    }
    // What is not settled stays in the journal, as if it were a temporary of this run.
    journal_->seek(journal_->size());
    if (isPending()) ++live_;
    if (!uncleared_.empty()) ++live_;
}

bool WorkingFiles::isPending() const noexcept {
    return !pendingSaves_.empty() || !pendingDeletions_.empty() || !pendingCreations_.empty();
}

void WorkingFiles::pendingSettled() noexcept {
    if (!isPending()) return;
    pendingSaves_.clear();
    pendingDeletions_.clear();
    pendingCreations_.clear();
    finished({});
}

void WorkingFiles::clearMove(const Leftover& leftover, bool isThere) {
    if (isThere) {
        try {
            files_.rename(leftover.path, leftover.target);
        } catch (const base::FileFailure&) {
            // The others of its group are in place: nothing may be written until this one is as well.
            unfinishedMoves_.emplace_back(leftover.path, leftover.target);
            throw;
        }
    } else if (!isFolderInUse(leftover.target)) {
        uncleared_.push_back(leftover.path + " cannot be put in the place of " + leftover.target +
                             ", as that folder is gone or empty.");
    }
}

bool WorkingFiles::isFolderInUse(const std::string& path) {
    // A volume that is not mounted leaves an empty folder behind, or none.
    const std::string folder(paths_.folder(path));
    const auto status = files_.status(folder, platform::Follow::Yes);
    return status && status->kind == platform::FileKind::Folder && !files_.list(folder).empty();
}

void WorkingFiles::clear(const Leftover& leftover) {
    if (leftover.kind == kCreation) {
        pendingCreations_.push_back(leftover.target);
        return;
    }
    const auto status = files_.status(leftover.path, platform::Follow::No);
    if (leftover.kind == kSave && (!status || isSameFile(status->identity, leftover.identity))) {
        pendingSaves_.push_back({status ? leftover.path : std::string(), leftover.target});
        return;
    }
    const bool isMove = leftover.kind == kMove && leftover.committed;
    if (!status && isMove) clearMove(leftover, false);
    if (!status || status->kind != platform::FileKind::Regular) return;
    if (leftover.kind == kIntent) {
        // Ended between making the file and noting which one it is: nothing was written yet.
        if (status->size == 0) files_.remove(leftover.path);
        return;
    }
    if (!isSameFile(status->identity, leftover.identity)) return;
    if (leftover.kind == kWipe || leftover.kind == kRemove) {
        pendingDeletions_.push_back({leftover.path, leftover.target, leftover.kind == kWipe});
    } else if (isMove) {
        clearMove(leftover, true);
    } else if (leftover.kind == kPlain) {
        wipeFile(files_, leftover.path);
    } else {
        files_.remove(leftover.path);
    }
}

}  // namespace corvalence::crypto
