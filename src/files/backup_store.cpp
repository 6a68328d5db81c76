#include "files/backup_store.h"

#include <algorithm>

#include "crypto/sealed_file.h"
#include "platform/file_copy.h"

namespace corvalence::files {

namespace {

void ensureExists(store::Vault& vault, const std::string& path, bool& repaired) {
    if (vault.platform.files.status(path, platform::Follow::No)) return;
    vault.platform.files.createNew(path);
    repaired = true;
}

}  // namespace

bool repairBackupPair(store::Vault& vault, const store::BackupPair& pair) {
    bool repaired = false;
    ensureExists(vault, pair.file, repaired);
    ensureExists(vault, pair.index, repaired);
    return !repaired;
}

BackupAppender::BackupAppender(store::Vault& vault, const store::OpenDatabaseContext& context, bool sealed)
    : vault_(vault),
      pair_(store::backupPair(vault.configuration, context.backupNumber())),
      sealed_(sealed),
      index_(vault, pair_),
      chain_(crypto::BackupIV(pair_.index)),
      end_(index_.storedTotal()),
      committed_(end_) {
    if (!repairBackupPair(vault, pair_)) {
        vault.platform.ui.message(platform::Icon::Warning, std::string(kBackupFileMissing));
    }
    setOrphanAside(context);
    own_.emplace(OwnFiles::ofDatabase(vault, context));
    container_ = vault.platform.files.openExclusive(pair_.file);
    if (container_->size() != end_) container_->resize(end_);
    container_->seek(end_);
}

BackupAppender::~BackupAppender() {
    try {
        if (end_ != committed_ || fileIsOpen_) container_->resize(committed_);
    } catch (const base::FileFailure&) {
        // The next append cuts it.
    }
}

std::optional<std::string> BackupAppender::add(const std::string& path, const std::string& digest,
                                               FileDigester& digester, ByteProgress& progress) {
    std::optional<std::string> failure;
    try {
        failure = append(path, digest, digester, progress);
    } catch (const base::FileFailure& thrown) {
        failure = thrown.path() == path ? std::string(thrown.reason()) : thrown.what();
    }
    if (fileIsOpen_) drop();
    return failure;
}

std::optional<std::string> BackupAppender::append(const std::string& path, const std::string& digest,
                                                  FileDigester& digester, ByteProgress& progress) {
    const auto source = vault_.platform.files.openShared(path);
    if (own_->has(source->status().identity)) return std::string(base::reasonText(base::Cause::AccessDenied));
    begin();
    const auto file = digester.digest(*source, progress, [this](base::ByteView bytes) { write(bytes); });
    if (!file) return std::nullopt;
    if (file->digest != digest) return "The file has been changed again meanwhile.";
    end(path, file->bytes);
    return std::string();
}

void BackupAppender::setOrphanAside(const store::OpenDatabaseContext& context) {
    platform::FileSystem& files = vault_.platform.files;
    const auto size = [&](const std::string& path) {
        const auto status = files.status(path, platform::Follow::Yes);
        return status ? status->size : 0;
    };
    // An add that was killed leaves the same, but then the database lists nothing either.
    if (index_.storedTotal() > 0 || size(pair_.file) == 0 || size(context.path()) == 0) return;
    std::string aside;
    int number = 0;
    do {
        aside =
            pair_.file + std::string(store::kSetAsideSuffix) + (number == 0 ? "" : std::to_string(number));
        ++number;
    } while (!files.renameNew(pair_.file, aside));
    vault_.platform.ui.message(platform::Icon::Warning, pair_.index + " lists no backups, but " + pair_.file +
                                                            " holds some. They are kept as " + aside +
                                                            ", and new ones begin anew.");
    files.createNew(pair_.file);
}

void BackupAppender::begin() {
    plainWritten_ = 0;
    fileIsOpen_ = true;
    // One writer serves all files; one that was dropped in the middle took its writer with it.
    if (sealed_ && !writer_)
        writer_ = std::make_unique<crypto::SealWriter>(*container_, vault_.session.key, chain_);
}

void BackupAppender::write(base::ByteView bytes) {
    plainWritten_ += bytes.size();
    if (writer_) {
        writer_->write(bytes);
    } else {
        container_->write(bytes);
    }
}

void BackupAppender::end(const std::string& path, std::uint64_t originalSize) {
    const std::uint64_t stored = writer_ ? writer_->finish() : plainWritten_;
    newLines_.append(renderBackupIndexEntry(path, sealed_, stored, originalSize));
    end_ += stored;
    fileIsOpen_ = false;
}

void BackupAppender::drop() {
    writer_.reset();
    container_->resize(end_);
    container_->seek(end_);
    fileIsOpen_ = false;
}

void BackupAppender::commit() {
    container_->flush();
    auto list = vault_.working.createSealed(pair_.index, crypto::kSealedBesideSuffix);
    crypto::SealWriter writer(list.file(), vault_.session.key, chain_);
    writer.write(base::bytesOf(index_.text()));
    writer.write(base::bytesOf(newLines_.view()));
    writer.finish();
    list.keepAs(pair_.index);
    committed_ = end_;
}

Extraction extractBackupData(store::Vault& vault, const store::BackupPair& pair, platform::File& container,
                             const BackupIndexEntry& entry, ByteProgress& progress,
                             const FileDigester::Sink& sink) {
    const auto plainLength = entry.plainLength();
    if (!plainLength || entry.offset + entry.storedLength > container.size()) return Extraction::Broken;
    container.seek(entry.offset);
    base::PageBuffer block(platform::kBlockSize);
    std::optional<crypto::UnsealReader> reader;
    if (entry.sealed) {
        reader.emplace(container, entry.storedLength, vault.session.key, crypto::BackupIV(pair.index),
                       crypto::EndRule::exactLength(*plainLength));
    }
    for (std::uint64_t left = *plainLength; left > 0;) {
        if (progress.cancelled()) return Extraction::Cancelled;
        const base::ByteSpan wanted =
            block.bytes().first(static_cast<std::size_t>(std::min<std::uint64_t>(left, block.size())));
        const std::size_t count = reader ? reader->read(wanted) : container.read(wanted);
        if (count == 0) return Extraction::Broken;
        sink(wanted.first(count));
        progress.advance(count);
        left -= count;
    }
    return Extraction::Whole;
}

}  // namespace corvalence::files
