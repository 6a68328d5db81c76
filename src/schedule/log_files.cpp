#include "schedule/log_files.h"

#include <algorithm>

#include "base/page_buffer.h"
#include "crypto/sealed_file.h"
#include "crypto/secure_zero.h"
#include "platform/file_copy.h"
#include "store/backup_database.h"
#include "store/database_index.h"

namespace corvalence::schedule {

namespace {

namespace key = settings::key;

constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;
constexpr std::string_view kLineEnd = "\r\n";

constexpr std::uint64_t wholeBlocks(std::uint64_t size) noexcept {
    return size / kBlock * kBlock;
}

/// Whether two paths lead to one file that is there.
bool isSameFile(platform::FileSystem& files, const std::string& a, const std::string& b) {
    const auto first = files.status(a, platform::Follow::Yes);
    const auto second = files.status(b, platform::Follow::Yes);
    return first && second && first->identity == second->identity;
}

void beginLine(crypto::SealAppender& log) {
    if (!log.isAtLineBegin()) log.write(base::bytesOf(kLineEnd));
}

/// The text of a sealed log behind that of another.
void appendText(platform::File& from, crypto::SealAppender& to, const crypto::Session& session) {
    const std::uint64_t size = wholeBlocks(from.size());
    crypto::UnsealReader reader(from, size, session.key, session.chains.LogIV, crypto::EndRule::textTail());
    base::PageBuffer block(static_cast<std::size_t>(std::min<std::uint64_t>(size, platform::kBlockSize)));
    while (const std::size_t count = reader.read(block.bytes()))
        to.write(block.bytes().first(count));
    crypto::secureZero(block.data(), block.size());
}

}  // namespace

std::string LogFiles::path(LogKind kind) const {
    return vault_.configuration.folder(key::kScheduleDirectory) +
           (kind == LogKind::Master ? "Scheduled Checking Log File" : "Scheduled Checking Log File~");
}

crypto::TemporaryFile LogFiles::copyBeside(LogKind source, LogKind target) {
    crypto::TemporaryFile copy = vault_.working.createSealed(path(target), crypto::kSealedBesideSuffix);
    if (vault_.platform.files.status(path(source), platform::Follow::Yes)) {
        const auto file = vault_.platform.files.openShared(path(source));
        platform::copyBytes(*file, copy.file(), wholeBlocks(file->size()));
    }
    return copy;
}

void LogFiles::commit(crypto::TemporaryFile master) {
    std::vector<std::pair<crypto::TemporaryFile, std::string>> moves;
    moves.emplace_back(std::move(master), path(LogKind::Master));
    moves.emplace_back(vault_.working.createSealed(path(LogKind::Session), crypto::kSealedBesideSuffix),
                       path(LogKind::Session));
    vault_.working.commitMoves(std::move(moves));
}

bool LogFiles::isEmpty(LogKind kind) const {
    const auto status = vault_.platform.files.status(path(kind), platform::Follow::Yes);
    return !status || status->size == 0;
}

void LogFiles::appendSession() {
    if (isEmpty(LogKind::Session)) return;
    crypto::TemporaryFile master = copyBeside(LogKind::Master, LogKind::Master);
    {
        crypto::SealAppender log(master.file(), vault_.session.key, vault_.session.chains.LogIV);
        beginLine(log);
        const auto session = vault_.platform.files.openShared(path(LogKind::Session));
        appendText(*session, log, vault_.session);
        log.finish();
    }
    commit(std::move(master));
}

bool LogFiles::overwriteMaster() {
    if (isEmpty(LogKind::Session)) return false;
    commit(copyBeside(LogKind::Session, LogKind::Master));
    return true;
}

void LogFiles::empty(LogKind kind) {
    vault_.working.createSealed(path(kind), crypto::kSealedBesideSuffix).keepAs(path(kind));
}

std::optional<std::string> LogFiles::findExportFault(const std::string& destination) const {
    platform::FileSystem& files = vault_.platform.files;
    const auto folder =
        files.status(std::string(vault_.platform.paths.folder(destination)), platform::Follow::Yes);
    for (const std::string_view own :
         {key::kInstallDirectory, key::kBackupFilesDirectory, key::kScheduleDirectory}) {
        const auto status = files.status(vault_.configuration.folder(own), platform::Follow::Yes);
        if (folder && status && folder->identity == status->identity)
            return destination + " lies in a folder that the installation keeps its own files in.";
    }
    const std::string settings = vault_.platform.settings.file();
    if (!settings.empty() && isSameFile(files, settings, destination))
        return destination + " holds the settings of the installation.";
    if (store::findClaimant(vault_, store::DatabaseIndex(vault_).records(), {}, destination))
        return destination + "  is the name of an existing database.";
    return std::nullopt;
}

void LogFiles::exportLog(LogKind kind, const std::string& destination) {
    const auto source = vault_.platform.files.openShared(path(kind));
    crypto::TemporaryFile copy = vault_.working.createSealed(destination, crypto::kSealedBesideSuffix);
    platform::copyBytes(*source, copy.file(), wholeBlocks(source->size()));
    copy.keepAs(destination);
}

LogPair::LogPair(store::Vault& vault, bool keepsText) : keepsText_(keepsText) {
    try {
        platform::FileSystem& files = vault.platform.files;
        const std::string path = LogFiles(vault).path(LogKind::Session);
        file_ = files.status(path, platform::Follow::Yes) ? files.openExclusive(path) : files.createNew(path);
        log_.emplace(*file_, vault.session.key, vault.session.chains.LogIV);
        beginLine(*log_);
    } catch (const base::FileFailure& failure) {
        failure_ = failure.what();
        log_.reset();
        file_.reset();
    }
}

LogPair::~LogPair() {
    close();
}

template <typename Step>
void LogPair::guarded(Step&& step) {
    if (!log_) return;
    try {
        step(*log_);
    } catch (const base::FileFailure& failure) {
        failure_ = failure.what();
        log_.reset();
        file_.reset();
    }
}

void LogPair::write(std::string_view text) {
    const auto put = [this](std::string_view piece) {
        if (keepsText_) text_.append(piece);
        guarded([&](crypto::SealAppender& log) { log.write(base::bytesOf(piece)); });
    };
    while (!text.empty()) {
        const std::size_t feed = text.find('\n');
        put(text.substr(0, feed));
        if (feed == std::string_view::npos) break;
        put(kLineEnd);
        text.remove_prefix(feed + 1);
    }
    guarded([](crypto::SealAppender& log) { log.push(); });
}

void LogPair::close() {
    guarded([](crypto::SealAppender& log) { log.finish(); });
    log_.reset();
    file_.reset();
}

}  // namespace corvalence::schedule
