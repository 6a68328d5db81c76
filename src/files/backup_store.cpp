#include "files/backup_store.h"

#include <algorithm>
#include <set>
#include <unordered_map>

#include "crypto/sealed_file.h"
#include "platform/file_copy.h"

namespace corvalence::files {

namespace {

void ensureExists(store::Vault& vault, const std::string& path, bool& repaired) {
    if (vault.platform.files.status(path, platform::Follow::No)) return;
    vault.platform.files.createNew(path);
    repaired = true;
}

/// Shows what its inner progress shows, but is never cancelled: for a step that must not be left half done.
class Uninterrupted : public platform::Progress {
  public:
    explicit Uninterrupted(platform::Progress& inner) : inner_(inner) {}
    bool cancelled() override {
        inner_.cancelled();  // a graphical front pumps its events there
        return false;
    }
    void bar(std::uint32_t position) override { inner_.bar(position); }
    void label(const std::string& text) override { inner_.label(text); }
    void file(const std::string& path, std::uint64_t remaining) override { inner_.file(path, remaining); }

  private:
    platform::Progress& inner_;
};

/// A container and its list of entries while both are written anew.
class ContainerRewrite {
  public:
    ContainerRewrite(store::Vault& vault, const store::BackupPair& pair, crypto::DigestCode digest,
                     std::uint64_t storedTotal)
        : vault_(vault),
          pair_(pair),
          chain_(crypto::BackupIV(pair.index)),
          digester_(digest),
          sealed_(vault.configuration.encryptsBackups()),
          old_(vault.platform.files.openExclusive(pair.file)),
          container_(vault.working.createSealed(pair.file, crypto::kSealedBesideSuffix)) {
        // As before an append: what is missing of a damaged container is filled up, so that the rest keeps
        // its place.
        if (old_->size() < storedTotal) old_->resize(storedTotal);
    }

    void keep(const BackupIndexEntry& entry) {
        if (entry.offset != keptEnd_) copyKept();
        if (keptBegin_ == keptEnd_) keptBegin_ = entry.offset;
        keptEnd_ = entry.offset + entry.storedLength;
        lines_.append(entry.line);
    }

    /// Writes the file's present content. An empty text on success, else why its old entry has to stay.
    std::string put(const BackupReplacement& replacement, ByteProgress& progress) {
        copyKept();
        std::uint64_t stored = 0;
        std::optional<DigestedFile> file;
        try {
            const auto source = vault_.platform.files.openShared(replacement.path);
            file = writeContent(*source, progress, stored);
        } catch (const base::FileFailure& failure) {
            if (failure.path() != replacement.path) throw;  // the container's own failure ends the rewrite
            rewind();
            return std::string(failure.reason());
        }
        if (!file || file->digest != replacement.digest) {
            rewind();
            return "The file has been changed again meanwhile.";
        }
        lines_.append(renderBackupIndexEntry(replacement.path, sealed_, stored, file->bytes));
        end_ += stored;
        return {};
    }

    void commit() {
        copyKept();
        crypto::TemporaryFile index = vault_.working.createSealed(pair_.index, crypto::kSealedBesideSuffix);
        crypto::SealWriter writer(index.file(), vault_.session.key, chain_);
        writer.write(base::bytesOf(lines_.view()));
        writer.finish();
        old_.reset();
        std::vector<std::pair<crypto::TemporaryFile, std::string>> moves;
        moves.emplace_back(std::move(container_), pair_.file);
        moves.emplace_back(std::move(index), pair_.index);
        vault_.working.commitMoves(std::move(moves));
    }

  private:
    std::optional<DigestedFile> writeContent(platform::File& source, ByteProgress& progress,
                                             std::uint64_t& stored) {
        if (!sealed_) {
            return digester_.digest(source, progress, [&](base::ByteView bytes) {
                container_.file().write(bytes);
                stored += bytes.size();
            });
        }
        crypto::SealWriter writer(container_.file(), vault_.session.key, chain_);
        auto file = digester_.digest(source, progress, [&](base::ByteView bytes) { writer.write(bytes); });
        stored = writer.finish();
        return file;
    }

    /// Neighbours that stay are copied as one stretch, so that a small file costs no calls of its own.
    void copyKept() {
        old_->seek(keptBegin_);
        platform::copyBytes(*old_, container_.file(), keptEnd_ - keptBegin_);
        end_ += keptEnd_ - keptBegin_;
        keptBegin_ = keptEnd_ = 0;
    }

    void rewind() {
        container_.file().resize(end_);
        container_.file().seek(end_);
    }

    store::Vault& vault_;
    const store::BackupPair& pair_;
    crypto::ChainValue chain_;
    FileDigester digester_;
    bool sealed_;
    std::unique_ptr<platform::File> old_;
    crypto::TemporaryFile container_;
    crypto::SecretText lines_;
    std::uint64_t end_ = 0;
    std::uint64_t keptBegin_ = 0;  // stretch of the old container that is still to be copied
    std::uint64_t keptEnd_ = 0;
};

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
    crypto::SecretText text(index_.text());
    text.append(newLines_.view());
    crypto::sealFile(vault_.working, text.view(), pair_.index, vault_.session.key, chain_);
    committed_ = end_;
}

std::vector<ReplacementFailure> replaceBackupEntries(store::Vault& vault,
                                                     const store::OpenDatabaseContext& context,
                                                     const std::vector<BackupReplacement>& replacements,
                                                     platform::Progress& progress) {
    std::vector<ReplacementFailure> failures;
    if (replacements.empty()) return failures;
    const store::BackupPair pair = store::backupPair(vault.configuration, context.backupNumber());
    if (!repairBackupPair(vault, pair)) {
        vault.platform.ui.message(platform::Icon::Warning, std::string(kBackupFileMissing));
    }
    const BackupIndex index(vault, pair);
    // Which replacement begins at an entry, and which entries go without one.
    std::unordered_map<std::size_t, std::size_t> firstOf;
    std::unordered_map<std::size_t, std::size_t> furtherOf;
    std::vector<std::size_t> withoutEntry;
    for (std::size_t i = 0; i < replacements.size(); ++i) {
        const auto entries = index.find(replacements[i].path);
        if (entries.empty()) {
            withoutEntry.push_back(i);
            continue;
        }
        firstOf[entries.front()] = i;
        for (std::size_t k = 1; k < entries.size(); ++k)
            furtherOf[entries[k]] = i;
    }

    ContainerRewrite rewrite(vault, pair, context.digest(), index.storedTotal());
    Uninterrupted uninterrupted(progress);
    ByteProgress bytes(uninterrupted, 0);
    std::set<std::size_t> kept;  // replacements whose old entries have to stay
    const auto put = [&](std::size_t replacement) {
        std::string reason = rewrite.put(replacements[replacement], bytes);
        if (reason.empty()) return true;
        failures.push_back({replacements[replacement].path, std::move(reason)});
        kept.insert(replacement);
        return false;
    };
    for (std::size_t number = 0; number < index.size(); ++number) {
        if (const auto first = firstOf.find(number); first != firstOf.end()) {
            if (!put(first->second)) rewrite.keep(index.entry(number));
        } else if (const auto further = furtherOf.find(number);
                   further == furtherOf.end() || kept.contains(further->second)) {
            rewrite.keep(index.entry(number));
        }
    }
    for (const std::size_t replacement : withoutEntry)
        put(replacement);
    rewrite.commit();
    return failures;
}

bool extractBackupData(store::Vault& vault, const store::BackupPair& pair, platform::File& container,
                       const BackupIndexEntry& entry, const FileDigester::Sink& sink) {
    const auto plainLength = entry.plainLength();
    if (!plainLength || entry.offset + entry.storedLength > container.size()) return false;
    container.seek(entry.offset);
    base::PageBuffer block(platform::kBlockSize);
    if (entry.sealed) {
        crypto::UnsealReader reader(container, entry.storedLength, vault.session.key,
                                    crypto::BackupIV(pair.index), crypto::EndRule::exactLength(*plainLength));
        while (const std::size_t count = reader.read(block.bytes()))
            sink(block.bytes().first(count));
        return true;
    }
    for (std::uint64_t left = *plainLength; left > 0;) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, block.size()));
        const std::size_t count = container.read(block.bytes().first(wanted));
        if (count == 0) return false;
        sink(block.bytes().first(count));
        left -= count;
    }
    return true;
}

}  // namespace corvalence::files
