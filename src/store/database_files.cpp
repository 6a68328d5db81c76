#include "store/database_files.h"

#include <algorithm>

#include "store/backup_database.h"
#include "store/component_files.h"
#include "store/component_index.h"
#include "store/database_index.h"

namespace corvalence::store {

namespace {

/// The files beside the database's own, each with its digest of the component index or an empty one.
std::vector<SealedFileRecord> siblingRecords(const std::vector<SealedFileRecord>& listed,
                                             const IndexRecord& record, const base::PathRules& paths) {
    std::vector<SealedFileRecord> siblings;
    for (const std::string& path : siblingFiles(record.kind, record.path)) {
        const auto found = std::find_if(listed.begin(), listed.end(), [&](const SealedFileRecord& component) {
            return paths.equal(component.path, path);
        });
        siblings.push_back(found == listed.end() ? SealedFileRecord{path, {}} : *found);
    }
    return siblings;
}

/// Whether a component of a numbered database lies beside it though the component index has none: without
/// that a lost index would pass for a database that never had any.
bool holdsComponent(const Vault& vault, const IndexRecord& record) {
    for (const std::string& path : componentMarks(record.path)) {
        if (readsAsText(vault, path, crypto::PathIV(path))) return true;
    }
    return false;
}

}  // namespace

std::vector<std::vector<SealedFileRecord>> databaseFiles(Vault& vault,
                                                         const std::vector<IndexRecord>& records) {
    const auto components = ComponentIndex(vault).records();
    std::vector<std::vector<SealedFileRecord>> all;
    for (const IndexRecord& record : records) {
        auto& files = all.emplace_back();
        files.push_back({record.path, record.fileDigest});
        const auto siblings = siblingRecords(components, record, vault.platform.paths);
        const bool hasThem = record.kind != DatabaseKind::Numbered ||
                             std::any_of(siblings.begin(), siblings.end(),
                                         [](const auto& sibling) { return !sibling.digest.empty(); }) ||
                             holdsComponent(vault, record);
        if (hasThem) files.insert(files.end(), siblings.begin(), siblings.end());
    }
    return all;
}

std::vector<SealedFileRecord> databaseFiles(Vault& vault, const IndexRecord& record) {
    return databaseFiles(vault, std::vector{record}).front();
}

bool isCompleteSystem(Vault& vault, const IndexRecord& record) {
    return record.kind == DatabaseKind::Numbered && databaseFiles(vault, record).size() > 1;
}

std::vector<SealedFileRecord> componentRecords(Vault& vault, DatabaseKind kind, Form form,
                                               const IndexRecord& database) {
    const auto listed = databaseFiles(vault, database);
    std::vector<SealedFileRecord> records;
    for (const std::string& path : componentFiles(kind, form, database.path)) {
        const auto found = std::find_if(listed.begin(), listed.end(),
                                        [&](const SealedFileRecord& file) { return file.path == path; });
        records.push_back(found == listed.end() ? SealedFileRecord{path, {}} : *found);
    }
    return records;
}

std::vector<std::string> databasePlaces(const Vault& vault, DatabaseKind kind, const std::string& path) {
    std::vector<std::string> places = siblingFiles(kind, path);
    places.insert(places.begin(), path);
    for (std::size_t at = 0, count = places.size(); at < count; ++at)
        places.push_back(backupDatabasePath(places[at], vault.configuration, vault.platform.paths));
    return places;
}

std::optional<SealedFileRecord> findDatabaseFile(Vault& vault, const std::string& path) {
    for (const auto& files : databaseFiles(vault, DatabaseIndex(vault).records())) {
        for (const SealedFileRecord& file : files) {
            if (vault.platform.paths.equal(file.path, path)) return file;
        }
    }
    return std::nullopt;
}

}  // namespace corvalence::store
