#include "components/own_names.h"

#include <array>

#include "crypto/sealed_file.h"
#include "reports/report_writer.h"
#include "store/backup_pair.h"
#include "store/component_index.h"
#include "store/database_files.h"
#include "store/database_index.h"

namespace corvalence::components {

namespace {

constexpr std::array<std::string_view, 4> kRootNames = {"lock", "Working Copies", "App SC", "Permissions"};
constexpr std::array<std::string_view, 3> kScheduleNames = {
    "Database Checking Schedule", "Scheduled Checking Log File", "Scheduled Checking Log File~"};

}  // namespace

OwnNames::OwnNames(store::Vault& vault) : vault_(vault) {
    const std::string root = vault.configuration.folder(settings::key::kInstallDirectory);
    for (const std::string_view name : kRootNames)
        note(root + std::string(name));
    const std::string schedule = vault.configuration.folder(settings::key::kScheduleDirectory);
    for (const std::string_view name : kScheduleNames)
        note(schedule + std::string(name));
    for (const reports::ReportRow& row : reports::reportRows())
        note(reports::reportPath(vault.configuration, row.kind));
    if (const std::string stored = vault.platform.settings.file(); !stored.empty()) note(stored);
    note(store::DatabaseIndex(vault).path());
    note(store::ComponentIndex(vault).path());
    for (const store::IndexRecord& record : store::DatabaseIndex(vault).records()) {
        noteDatabase(record.kind, record.path);
        if (record.kind != store::DatabaseKind::Numbered) continue;
        const store::BackupPair pair = store::backupPair(vault.configuration, record.number);
        note(pair.file);
        note(pair.index);
    }
}

OwnNames::OwnNames(store::Vault& vault, store::DatabaseKind kind, const std::string& database)
    : OwnNames(vault) {
    // A listed one is noted with all names that it can have.
    if (!store::DatabaseIndex(vault).findExact(database)) noteDatabase(kind, database);
}

void OwnNames::noteDatabase(store::DatabaseKind kind, const std::string& database) {
    for (const std::string& place : store::databasePlaces(vault_, kind, database))
        note(place);
}

void OwnNames::note(const std::string& path) {
    const base::PathRules& paths = vault_.platform.paths;
    const std::string folder(paths.folder(path));
    const auto [known, isNew] = folders_.try_emplace(folder);
    if (isNew) {
        if (const auto status = vault_.platform.files.status(folder, platform::Follow::Yes))
            known->second = status->identity;
    }
    if (!known->second) return;
    Names& names = names_[*known->second];
    for (const std::string& each : {path, path + std::string(crypto::kSealedBesideSuffix),
                                    vault_.working.savePath(path), vault_.working.copyPath(path)}) {
        names.insert(paths.comparisonKey(paths.fileName(each)));
    }
}

bool OwnNames::hold(const std::string& path) {
    const base::PathRules& paths = vault_.platform.paths;
    const std::string_view folder = paths.folder(path);
    if (folder != heldFolder_) {
        heldFolder_ = folder;
        const auto status = vault_.platform.files.status(heldFolder_, platform::Follow::Yes);
        held_ = status ? in(status->identity) : nullptr;
    }
    return held_ != nullptr && held_->contains(paths.comparisonKey(paths.fileName(path)));
}

const OwnNames::Names* OwnNames::in(const platform::FileIdentity& folder) const {
    const auto found = names_.find(folder);
    return found == names_.end() ? nullptr : &found->second;
}

}  // namespace corvalence::components
