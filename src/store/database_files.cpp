#include "store/database_files.h"

#include <algorithm>

#include "store/backup_database.h"
#include "store/component_files.h"
#include "store/component_index.h"
#include "store/database_index.h"

namespace corvalence::store {

std::vector<std::vector<SealedFileRecord>> databaseFiles(Vault& vault,
                                                         const std::vector<IndexRecord>& records) {
    const base::PathRules& paths = vault.platform.paths;
    const auto components = ComponentIndex(vault).records();
    std::vector<std::vector<SealedFileRecord>> all;
    for (const IndexRecord& record : records) {
        auto& files = all.emplace_back();
        files.push_back({record.path, record.fileDigest});
        for (const std::string& sibling : siblingFiles(record.kind, record.path)) {
            const auto listed = std::find_if(
                components.begin(), components.end(),
                [&](const SealedFileRecord& component) { return paths.equal(component.path, sibling); });
            if (listed != components.end()) {
                files.push_back(*listed);
            } else if (record.kind != DatabaseKind::Numbered) {
                files.push_back({sibling, {}});
            }
        }
    }
    return all;
}

std::vector<SealedFileRecord> databaseFiles(Vault& vault, const IndexRecord& record) {
    return databaseFiles(vault, std::vector{record}).front();
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
