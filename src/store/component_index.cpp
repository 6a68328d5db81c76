#include "store/component_index.h"

#include <algorithm>

#include "base/hex_text.h"
#include "base/record_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::store {

namespace {

constexpr std::size_t kDigestLength = 32;

/// Nothing where the line is no record, such as what the last sealed block leaves behind the last one.
std::optional<SealedFileRecord> parse(std::string_view line) {
    const auto fields = base::splitFields(base::withoutLineEnd(line));
    if (fields.size() != 2 || fields[0].empty() || fields[1].size() != kDigestLength ||
        !base::isHexText(fields[1])) {
        return std::nullopt;
    }
    return SealedFileRecord{std::string(fields[0]), std::string(fields[1])};
}

crypto::SecretText rendered(const std::vector<SealedFileRecord>& records) {
    crypto::SecretText text;
    for (const SealedFileRecord& record : records) {
        std::string line;
        base::appendField(line, record.path);
        base::appendField(line, record.digest);
        text.append(line + "\n");
    }
    return text;
}

}  // namespace

std::string ComponentIndex::path() const {
    return vault_.configuration.folder(settings::key::kBackupFilesDirectory) + "Component Index";
}

std::vector<SealedFileRecord> ComponentIndex::records() const {
    if (!vault_.platform.files.status(path(), platform::Follow::Yes)) return {};
    const crypto::SecretText text =
        crypto::unsealText(vault_.platform.files, path(), vault_.session.key, vault_.session.chains.IndexIV,
                           crypto::kUnsealBackupFolder);
    std::vector<SealedFileRecord> records;
    for (std::string_view rest = text.view(); !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        if (auto record = parse(line)) records.push_back(std::move(*record));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    return records;
}

std::optional<SealedFileRecord> ComponentIndex::find(const std::string& file) const {
    for (SealedFileRecord& record : records()) {
        if (vault_.platform.paths.equal(record.path, file)) return std::move(record);
    }
    return std::nullopt;
}

void ComponentIndex::put(const std::vector<SealedFileRecord>& added) {
    if (added.empty()) return;
    auto all = records();
    for (const SealedFileRecord& record : added) {
        std::erase_if(all, [&](const SealedFileRecord& old) {
            return vault_.platform.paths.equal(old.path, record.path);
        });
        all.push_back(record);
    }
    write(all);
}

void ComponentIndex::remove(const std::vector<std::string>& files) {
    auto all = records();
    const auto isRemoved = [&](const SealedFileRecord& record) {
        return std::any_of(files.begin(), files.end(), [&](const std::string& file) {
            return vault_.platform.paths.equal(record.path, file);
        });
    };
    if (std::erase_if(all, isRemoved) > 0) write(all);
}

crypto::SecretText ComponentIndex::textWith(
    const std::function<std::optional<std::string>(const SealedFileRecord&)>& digestOf) const {
    auto all = records();
    for (SealedFileRecord& record : all)
        record.digest = digestOf(record).value_or(record.digest);
    return rendered(all);
}

void ComponentIndex::write(const std::vector<SealedFileRecord>& records) {
    crypto::sealFile(vault_.working, rendered(records).view(), path(), vault_.session.key,
                     vault_.session.chains.IndexIV);
}

}  // namespace corvalence::store
