#include "store/database_deletion.h"

#include <vector>

#include "crypto/wipe.h"
#include "store/backup_database.h"
#include "store/backup_pair.h"
#include "store/component_index.h"
#include "store/database_files.h"
#include "store/database_index.h"

namespace corvalence::store {

namespace {

/// One deletion, step by step; a step that fails is told and does not keep the others from being done.
class Deletion {
  public:
    Deletion(Vault& vault, const IndexRecord& record) : vault_(vault), record_(record) {}

    void run(DeletionListener& listener) {
        DatabaseIndex index(vault_);
        const auto records = index.records();
        std::vector<std::string> siblings;
        for (const SealedFileRecord& file : databaseFiles(vault_, record_)) {
            const std::string backup =
                backupDatabasePath(file.path, vault_.configuration, vault_.platform.paths);
            take(file, file.path);
            if (!vault_.platform.paths.equal(file.path, backup) &&
                !findClaimant(vault_, records, record_.path, backup)) {
                take(file, backup);
            }
            if (file.path != record_.path) siblings.push_back(file.path);
        }
        const BackupPair pair = backupPair(vault_.configuration, record_.number);
        if (record_.kind == DatabaseKind::Numbered)
            files_.insert(files_.end(), {{pair.index, false}, {pair.file, false}});
        std::erase_if(files_, [&](const File& file) {
            return !vault_.working.noteDeletion(record_.path, file.path, file.wipes);
        });
        removeRecord(index);
        step([&] { listener.databaseDeleted(record_.path); });
        step([&] { ComponentIndex(vault_).remove(siblings); });
        for (const File& file : files_)
            step([&] { end(file); });
    }

    bool isComplete() const noexcept { return isComplete_; }

  private:
    struct File {
        std::string path;
        bool wipes = false;
    };

    /// A link goes, what it leads to stays; so does a file that holds something else.
    void take(const SealedFileRecord& record, const std::string& path) {
        platform::Platform& system = vault_.platform;
        const auto status = system.files.status(path, platform::Follow::No);
        if (!status) return;
        if (status->kind == platform::FileKind::Link) {
            files_.push_back({path, false});
            tell(path + " was a link. It is removed; the file that it led to is left as it was.");
        } else if (holdsDataOf(vault_, record, path)) {
            files_.push_back({path, record_.kind == DatabaseKind::Numbered});
        } else {
            tell(path + " does not hold what this database wrote there, and is left as it is.");
        }
    }

    void removeRecord(DatabaseIndex& index) {
        try {
            index.removeRecord(record_.path);
        } catch (const base::FileFailure&) {
            for (const File& file : files_)
                vault_.working.deletionDone(file.path);
            throw;
        }
    }

    void end(const File& file) {
        platform::FileSystem& files = vault_.platform.files;
        if (file.wipes) {
            crypto::wipeFile(files, file.path);
        } else {
            files.remove(file.path);
        }
        vault_.working.deletionDone(file.path);
    }

    template <typename Step>
    void step(Step&& step) {
        try {
            step();
        } catch (const base::FileFailure& failure) {
            tell(std::string("Not everything of the database could be deleted: ") + failure.what());
        }
    }

    void tell(const std::string& text) {
        isComplete_ = false;
        vault_.platform.ui.message(platform::Icon::Warning, text);
    }

    Vault& vault_;
    const IndexRecord& record_;
    std::vector<File> files_;
    bool isComplete_ = true;
};

}  // namespace

void takeBackDatabase(Vault& vault, const IndexRecord& record) {
    /// No list has a database that never was whole.
    class NoList : public DeletionListener {
      public:
        void databaseDeleted(const std::string&) override {}
    };
    NoList none;
    Deletion(vault, record).run(none);
}

DeletionResult deleteDatabase(Vault& vault, const OpenDatabaseContext& context, DeletionListener& listener) {
    platform::Platform& system = vault.platform;
    const bool listsFiles =
        context.record.kind == DatabaseKind::Numbered && !isCompleteSystem(vault, context.record);
    if (!system.ui.ask(platform::Icon::Warning,
                       listsFiles
                           ? "Are you sure you would like to delete this database, its backup, and the "
                             "backups of the files listed within it?"
                           : "Are you sure you would like to delete database: " + context.path() +
                                 "  and its backups?")) {
        return DeletionResult::Declined;
    }
    Deletion deletion(vault, context.record);
    deletion.run(listener);
    if (!deletion.isComplete()) return DeletionResult::Incomplete;
    system.ui.message(platform::Icon::Information,
                      context.path() + (listsFiles ? ", its backup, and the backups of the files listed "
                                                     "within it successfully deleted."
                                                   : ", and its backups successfully deleted."));
    return DeletionResult::Deleted;
}

}  // namespace corvalence::store
