#include "core/reseal_plan.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "files/backup_reseal.h"
#include "reports/report_writer.h"
#include "schedule/log_files.h"
#include "schedule/schedule_list.h"
#include "store/backup_database.h"
#include "store/backup_pair.h"
#include "store/component_files.h"
#include "store/component_index.h"
#include "store/database_digest.h"
#include "store/database_files.h"
#include "store/database_index.h"

namespace corvalence::core {

namespace {

namespace key = settings::key;
using store::IndexRecord;

constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;

class Planner {
  public:
    explicit Planner(store::Vault& vault)
        : vault_(vault), files_(vault.platform.files), records_(store::DatabaseIndex(vault).records()) {
        const auto databases = store::databaseFiles(vault, records_);
        for (std::size_t at = 0; at < records_.size(); ++at) {
            const auto& files = databases[at];
            databases_.push_back({files.front(), records_[at].kind == store::DatabaseKind::Numbered});
            for (const std::string& path : store::siblingFiles(records_[at].kind, records_[at].path)) {
                const auto listed = std::find_if(files.begin(), files.end(),
                                                 [&](const auto& file) { return file.path == path; });
                siblings_.push_back({listed == files.end() ? store::SealedFileRecord{path, {}} : *listed});
            }
        }
    }

    ResealPlan plan(const std::vector<std::string>& savedReports) {
        // Each place is claimed once; whose it is first of all comes first.
        const std::string index = store::DatabaseIndex(vault_).path();
        claim(index);
        files_.openExclusive(index);
        if (const std::string components = store::ComponentIndex(vault_).path(); claim(components))
            files_.openExclusive(components);
        for (const Owned& owned : databases_)
            addOfDatabase(owned, owned.file.path);
        for (const IndexRecord& record : records_)
            addPair(record);
        for (const Owned& owned : databases_)
            addBackup(owned);
        for (const Owned& owned : siblings_)
            addOfDatabase(owned, owned.file.path);
        for (const Owned& owned : siblings_)
            addBackup(owned);
        addFixedFiles();
        noteSetAside();
        for (const std::string& report : savedReports)
            addText({report, vault_.session.chains.IndexIV, {}, true});
        for (const Owned& owned : databases_)
            noteEarlierBackups(owned);
        for (const Owned& owned : siblings_)
            noteEarlierBackups(owned);
        return std::move(plan_);
    }

  private:
    /// A file of a database, the database's own or one beside it; without a digest where none is listed.
    struct Owned {
        store::SealedFileRecord file;
        bool listsFiles = false;  // with digests and times in every line
    };

    bool isThere(const std::string& path) { return files_.status(path, platform::Follow::Yes).has_value(); }

    /// What stands at a path and is nobody's yet: it becomes the caller's. Nothing where nothing does.
    std::optional<platform::FileStatus> claim(const std::string& path) {
        const auto status = files_.status(path, platform::Follow::Yes);
        if (!status || status->kind != platform::FileKind::Regular || status->size == 0) return std::nullopt;
        if (!claimed_.insert(placeOf(path)).second) return std::nullopt;
        return status;
    }

    /// The same for every path that leads to the same name in the same folder.
    std::pair<platform::FileIdentity, std::string> placeOf(const std::string& path) {
        const base::PathRules& paths = vault_.platform.paths;
        const auto folder = files_.status(std::string(paths.folder(path)), platform::Follow::Yes);
        return {folder ? folder->identity : platform::FileIdentity{},
                paths.comparisonKey(paths.fileName(path))};
    }

    void leave(const std::string& path, std::string_view why) {
        plan_.left.push_back({path, path + std::string(why)});
    }

    void add(store::ResealTarget target) {
        // One that cannot be read, or is protected from being replaced, ends the change here.
        files_.openExclusive(target.path);
        const auto status = files_.status(target.path, platform::Follow::No);
        if (status && status->kind == platform::FileKind::Link) {
            leave(target.path,
                  " was a link. The file sealed with the new password stands in its place; the one that it "
                  "led to stays under the old one.");
        }
        plan_.targets.push_back(std::move(target));
    }

    /// A file of a database, or its backup. One that is damaged is told as changed already, and is again
    /// afterwards.
    void addOfDatabase(const Owned& owned, const std::string& path) {
        const auto status = claim(path);
        if (!status) return;
        if (status->size % kBlock != 0) {
            leave(path, " is damaged and stays under the old password.");
        } else if (isOf(owned, path)) {
            add({path, crypto::PathIV(owned.file.path)});
        } else {
            leave(path, " does not hold what this database wrote there, and is left as it is.");
        }
    }

    void addBackup(const Owned& owned) {
        if (owned.file.digest.empty()) return;
        const base::PathRules& paths = vault_.platform.paths;
        const std::string backup = store::backupDatabasePath(owned.file.path, vault_.configuration, paths);
        const bool hasPlace = !paths.folder(backup).empty();
        if (hasPlace) addOfDatabase(owned, backup);
        if (isThere(owned.file.path)) return;
        const bool isKept =
            hasPlace && isThere(backup) && store::digestFile(files_, backup) == owned.file.digest;
        if (!isKept) plan_.missing.push_back(owned.file.path);
    }

    bool isOf(const Owned& owned, const std::string& path) {
        // A list of files tells more than that it is text.
        return (!owned.listsFiles && store::readsAsText(vault_, path, crypto::PathIV(owned.file.path))) ||
               store::holdsDataOf(vault_, owned.file, path, platform::Follow::Yes);
    }

    void addPair(const IndexRecord& record) {
        if (record.kind != store::DatabaseKind::Numbered) return;
        const store::BackupPair pair = store::backupPair(vault_.configuration, record.number);
        const bool hasList = claim(pair.index).has_value();
        const bool hasContainer = claim(pair.file).has_value();
        if (!hasList) {
            const auto database = files_.status(record.path, platform::Follow::Yes);
            // Without a listed file it is what an add that was ended by force left behind.
            if (hasContainer && database && database->size > 0) {
                leave(pair.file, " has lost its list. Sealed backups in it stay under the old password.");
            }
            return;
        }
        try {
            for (store::ResealTarget& target : files::resealTargets(vault_, pair))
                add(std::move(target));
        } catch (const base::FileFailure& failure) {
            if (failure.cause() != base::Cause::InvalidFile) throw;
            plan_.damaged.push_back(pair.index);
        }
    }

    void addText(store::ResealTarget target) {
        const auto status = claim(target.path);
        if (!status) return;
        // An index that lists nothing opens with every password, so that this may not be the right one.
        const bool isProved = !records_.empty() || store::readsAsText(vault_, target.path, target.chain);
        if (status->size % kBlock != 0 || !isProved) {
            plan_.damaged.push_back(target.path);
        } else {
            add(std::move(target));
        }
    }

    /// A log that a killed check was writing to may end in part of a block, which the next check would cut
    /// off.
    void addLog(const std::string& path) {
        const auto status = files_.status(path, platform::Follow::Yes);
        const crypto::ChainValue chain = vault_.session.chains.LogIV;
        if (!status || status->size % kBlock == 0 || records_.empty()) return addText({path, chain});
        if (!claim(path)) return;
        const std::vector<store::Stretch> whole = {
            {status->size / kBlock * kBlock, crypto::EndRule::textTail()}};
        add({path, chain, [whole] { return whole; }});
    }

    void addFixedFiles() {
        const crypto::ChainValues& chains = vault_.session.chains;
        addText({schedule::ScheduleList(vault_).path(), chains.ScheduleIV});
        for (const auto log : {schedule::LogKind::Session, schedule::LogKind::Master})
            addLog(schedule::LogFiles(vault_).path(log));
        const std::string root = vault_.configuration.folder(key::kInstallDirectory);
        addText({root + "Permissions", chains.LogIV});
        for (const reports::ReportRow& row : reports::reportRows())
            addText({reports::reportPath(vault_.configuration, row.kind), chains.IndexIV});
    }

    const std::vector<platform::FolderEntry>& listing(const std::string& folder) {
        const auto [found, isNew] = listings_.try_emplace(folder);
        const auto status = folder.empty() ? std::nullopt : files_.status(folder, platform::Follow::Yes);
        if (isNew && status && status->kind == platform::FileKind::Folder)
            found->second = files_.list(folder);
        return found->second;
    }

    /// Containers whose lists were lost: nobody knows any more where a backup in them begins.
    void noteSetAside() {
        const std::string folder = vault_.configuration.folder(key::kBackupFilesDirectory);
        for (const platform::FolderEntry& entry : listing(folder)) {
            if (store::isSetAside(entry.name) && claim(folder + entry.name)) {
                leave(folder + entry.name,
                      " was kept when its list was lost. Sealed backups in it stay under the old password.");
            }
        }
    }

    void noteEarlierBackups(const Owned& owned) {
        if (owned.file.digest.empty()) return;
        const auto listed = [this](const std::string& folder) -> decltype(auto) { return listing(folder); };
        for (const std::string& path : store::findEarlierBackups(vault_, owned.file, listed)) {
            if (claim(path)) {
                leave(path,
                      " is a backup database from before the settings were changed. It stays under the old "
                      "password.");
            }
        }
    }

    store::Vault& vault_;
    platform::FileSystem& files_;
    std::vector<IndexRecord> records_;
    std::vector<Owned> databases_;  // their own files
    std::vector<Owned> siblings_;   // every path at which one can have another
    std::set<std::pair<platform::FileIdentity, std::string>> claimed_;
    std::map<std::string, std::vector<platform::FolderEntry>> listings_;
    ResealPlan plan_;
};

}  // namespace

ResealPlan planReseal(store::Vault& vault, const std::vector<std::string>& savedReports) {
    return Planner(vault).plan(savedReports);
}

std::optional<std::string> findReportFault(const store::Vault& vault, const std::string& path) {
    const auto status = vault.platform.files.status(path, platform::Follow::No);
    if (status && status->kind == platform::FileKind::Link)
        return path + " is a link. Name the report that it leads to.";
    if (status && status->kind == platform::FileKind::Regular &&
        (status->size == 0 || store::readsAsText(vault, path, vault.session.chains.IndexIV)))
        return std::nullopt;
    return path + " does not appear to be a Corvalence report that the current password opens.";
}

}  // namespace corvalence::core
