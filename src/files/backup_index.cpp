#include "files/backup_index.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "base/number_text.h"
#include "base/record_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::files {

namespace {

constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;

/// Splits one line into an entry, offset aside. Nothing where it is none.
std::optional<BackupIndexEntry> parseLine(std::string_view line) {
    const auto fields = base::splitFields(base::withoutLineEnd(line));
    if (fields.size() != 4 || fields[0].empty() || (fields[1] != "N" && fields[1] != "P"))
        return std::nullopt;
    const auto length = base::scanWholeUnits(fields[2]);
    const auto size = base::scanWholeUnits(fields[3]);
    if (!length || !size || *length > INT64_MAX || *size > UINT32_MAX) return std::nullopt;
    BackupIndexEntry entry;
    entry.path = fields[0];
    entry.sealed = fields[1] == "N";
    entry.storedLength = *length;
    entry.originalSize = static_cast<std::uint32_t>(*size);
    entry.line = line;
    return entry;
}

crypto::SecretText unsealed(store::Vault& vault, const std::string& path) {
    const auto status = vault.platform.files.status(path, platform::Follow::Yes);
    if (!status) return {};
    if (status->size % kBlock != 0) throw BackupDamaged(path);
    return crypto::unsealText(vault.platform.files, path, vault.session.key, crypto::BackupIV(path),
                              crypto::kUnsealBackupFolder);
}

}  // namespace

BackupDamaged::BackupDamaged(const std::string& path)
    : base::FileFailure(base::Cause::InvalidFile, path,
                        path +
                            " is damaged: the backups of this database cannot be told apart any more. "
                            "Put an undamaged copy of that file in its place. Where there is none, move "
                            "the file elsewhere: a new list is begun with the next backup that is made, "
                            "and the old backups are set aside. Files get a new backup when they are "
                            "removed from the database and added again.") {}

std::optional<std::uint64_t> BackupIndexEntry::plainLength() const noexcept {
    if (!sealed) return storedLength;
    if (storedLength == 0) return originalSize == 0 ? std::optional<std::uint64_t>(0) : std::nullopt;
    // The plain length lies within the last block; the low 32 bits say where.
    const std::uint64_t shortest = storedLength - kBlock + 1;
    const std::uint64_t length = shortest + ((originalSize - shortest) & 0xFFFF'FFFFU);
    if (storedLength % kBlock != 0 || length > storedLength) return std::nullopt;
    return length;
}

std::string renderBackupIndexEntry(std::string_view path, bool sealed, std::uint64_t storedLength,
                                   std::uint64_t originalSize) {
    std::string line(path);
    line.push_back(base::kSeparator);
    line.push_back(sealed ? 'N' : 'P');
    line.push_back(base::kSeparator);
    line += std::to_string(storedLength) + ".00";
    line.push_back(base::kSeparator);
    return line + std::to_string(static_cast<std::uint32_t>(originalSize)) + "\r\n";
}

BackupIndex::BackupIndex(store::Vault& vault, const store::BackupPair& pair)
    : BackupIndex(vault.platform.paths, unsealed(vault, pair.index), pair.index) {}

BackupIndex::BackupIndex(const base::PathRules& paths, crypto::SecretText text, const std::string& path)
    : paths_(paths), text_(std::move(text)) {
    parse(path);
}

void BackupIndex::parse(const std::string& path) {
    const std::string_view text = text_.view();
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t feed = text.find('\n', at);
        const std::size_t end = feed == std::string_view::npos ? text.size() : feed + 1;
        const auto entry = parseLine(text.substr(at, end - at));
        if (!entry || feed == std::string_view::npos) {
            if (!base::isStaleTail(text.size() - at)) throw BackupDamaged(path);
            break;
        }
        entries_.push_back({at, total_});
        if (entry->storedLength > INT64_MAX - total_) throw BackupDamaged(path);
        total_ += entry->storedLength;
        at = end;
        textEnd_ = end;
    }
}

BackupIndexEntry BackupIndex::entry(std::size_t number) const {
    const std::size_t begin = entries_[number].textOffset;
    const std::size_t end = number + 1 < entries_.size() ? entries_[number + 1].textOffset : textEnd_;
    auto entry = parseLine(text_.view().substr(begin, end - begin));
    entry->offset = entries_[number].storedOffset;
    return *entry;
}

std::uint64_t BackupIndex::hashOf(std::string_view path) const {
    return paths_.ignoresCase ? std::hash<std::string>()(paths_.comparisonKey(path))
                              : std::hash<std::string_view>()(path);
}

std::vector<std::size_t> BackupIndex::find(std::string_view path) const {
    if (byHash_.size() != entries_.size()) {
        byHash_.reserve(entries_.size());
        for (std::size_t i = 0; i < entries_.size(); ++i)
            byHash_.emplace_back(hashOf(entry(i).path), i);
        std::sort(byHash_.begin(), byHash_.end());
    }
    std::vector<std::size_t> found;
    const std::uint64_t hash = hashOf(path);
    auto at = std::lower_bound(byHash_.begin(), byHash_.end(), std::pair(hash, std::size_t{0}));
    for (; at != byHash_.end() && at->first == hash; ++at) {
        if (paths_.equal(entry(at->second).path, path)) found.push_back(at->second);
    }
    return found;
}

}  // namespace corvalence::files
