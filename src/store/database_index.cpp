#include "store/database_index.h"

#include <algorithm>

#include "base/record_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::store {

namespace {

/// The lines of an unsealed index, line feeds included, without what its last sealed block left behind them.
std::vector<std::string> splitLines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t feed = text.find('\n');
        const std::string_view line = text.substr(0, feed == std::string_view::npos ? feed : feed + 1);
        if (base::isStaleTail(text.size()) && !provesPassword(line)) break;
        lines.emplace_back(line);
        text.remove_prefix(line.size());
    }
    return lines;
}

}  // namespace

std::string DatabaseIndex::path() const {
    return vault_.configuration.folder(settings::key::kBackupFilesDirectory) + "Database Index";
}

PasswordProof DatabaseIndex::provePassword() const {
    const auto status = vault_.platform.files.status(path(), platform::Follow::Yes);
    if (!status) return PasswordProof::IndexMissing;
    if (status->size == 0) return PasswordProof::Proved;
    const Lines lines = readLines(crypto::kUnsealBackupFolder);
    const bool proved = !lines.empty() && std::all_of(lines.begin(), lines.end(), provesPassword);
    return proved ? PasswordProof::Proved : PasswordProof::Refused;
}

DatabaseIndex::Lines DatabaseIndex::readLines(const crypto::UnsealVariant& variant) const {
    const crypto::SecretText text = crypto::unsealText(vault_.platform.files, path(), vault_.session.key,
                                                       vault_.session.chains.IndexIV, variant);
    return splitLines(text.view());
}

void DatabaseIndex::writeLines(const Lines& lines) {
    crypto::SecretText text;
    for (const std::string& line : lines)
        text.append(line);
    crypto::sealFile(vault_.working, text.view(), path(), vault_.session.key, vault_.session.chains.IndexIV);
}

std::vector<IndexRecord> DatabaseIndex::records() const {
    std::vector<IndexRecord> records;
    for (const std::string& line : readLines(crypto::kUnsealIndexList)) {
        if (auto record = IndexRecord::parse(line)) records.push_back(std::move(*record));
    }
    return records;
}

std::optional<IndexRecord> DatabaseIndex::findRecord(const std::string& databasePath) const {
    for (const std::string& line : readLines(crypto::kUnsealIndexList)) {
        if (vault_.platform.paths.beginsWith(line, databasePath)) return IndexRecord::parse(line);
    }
    return std::nullopt;
}

std::optional<IndexRecord> DatabaseIndex::findExact(const std::string& databasePath) const {
    for (IndexRecord& record : records()) {
        if (vault_.platform.paths.equal(record.path, databasePath)) return std::move(record);
    }
    return std::nullopt;
}

crypto::SecretText DatabaseIndex::textWith(
    const std::function<std::optional<std::string>(const IndexRecord&)>& digestOf) const {
    crypto::SecretText text;
    for (const std::string& line : readLines(crypto::kUnsealBackupFolder)) {
        auto record = IndexRecord::parse(line);
        const auto digest = record ? digestOf(*record) : std::nullopt;
        if (digest) record->fileDigest = *digest;
        text.append(digest ? record->render() : line);
    }
    return text;
}

void DatabaseIndex::appendRecord(const IndexRecord& record) {
    Lines lines = readLines(crypto::kUnsealBackupFolder);
    lines.push_back(record.render());
    writeLines(lines);
}

void DatabaseIndex::changeFirstHit(const std::string& databasePath, const crypto::UnsealVariant& variant,
                                   const std::function<std::optional<IndexRecord>(IndexRecord)>& change) {
    Lines lines = readLines(variant);
    const auto hit = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
        return vault_.platform.paths.beginsWith(line, databasePath);
    });
    if (hit == lines.end()) return;
    auto record = IndexRecord::parse(*hit);
    if (!record) return;
    if (const auto changed = change(std::move(*record))) {
        *hit = changed->render();
    } else {
        lines.erase(hit);
    }
    writeLines(lines);
}

void DatabaseIndex::updateDigest(const std::string& databasePath, const std::string& digest) {
    changeFirstHit(databasePath, crypto::kUnsealBackupFolder, [&](IndexRecord record) {
        record.fileDigest = digest;
        return std::optional(std::move(record));
    });
}

void DatabaseIndex::stampChecked(const std::string& databasePath, base::FileTime time) {
    changeFirstHit(databasePath, crypto::kUnsealBackupFolder, [&](IndexRecord record) {
        record.lastCheck = time;
        return std::optional(std::move(record));
    });
}

void DatabaseIndex::removeRecord(const std::string& databasePath) {
    changeFirstHit(databasePath, crypto::kUnsealIndexDelete,
                   [](const IndexRecord&) { return std::optional<IndexRecord>(); });
}

}  // namespace corvalence::store
