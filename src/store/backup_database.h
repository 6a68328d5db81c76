#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/file_failure.h"
#include "base/path_rules.h"
#include "settings/configuration.h"
#include "store/index_record.h"
#include "store/vault.h"

namespace corvalence::store {

/// The place of a backup database holds something else. what() says what.
class BackupPlaceTaken : public base::FileFailure {
  public:
    BackupPlaceTaken(const std::string& backup, const std::string& reason);
};

/// Where the backup database of `database` lies: beside it or in the folder of Config3, the suffix of Config1
/// put before the last full stop of the file name, or behind a name that has none.
std::string backupDatabasePath(const std::string& database, const settings::Configuration& configuration,
                               const base::PathRules& paths);

/// The path of the database among `records`, other than `database`, that `path` belongs to: as one of its
/// files or as the backup of one. The configuration decides anew where each backup lies, so that a change of
/// it can bring two databases to one place.
std::optional<std::string> findClaimant(Vault& vault, const std::vector<IndexRecord>& records,
                                        const std::string& database, const std::string& path);

/// Whether the file at `path` holds sealed data of the record's database, of whatever age: it has the digest
/// of the record, or its beginning unseals to fields of records under the session's key. An empty file holds
/// nobody's data and counts as the database's. False for anything but a regular file; a link is one where it
/// is followed. Throws base::FileFailure.
bool holdsDataOf(const Vault& vault, const SealedFileRecord& record, const std::string& path,
                 platform::Follow follow = platform::Follow::No);

/// Whether the file at `path`, or what a link there leads to, unseals under the session's key to text lines,
/// by its beginning and its end. False for an empty file.
bool readsAsText(const Vault& vault, const std::string& path, const crypto::ChainValue& chain);

/// The files that hold data of the record's database under a name that another suffix gave its backup
/// database, beside the database and in the folder where backup databases are put now. `listing` gives a
/// folder's entries.
std::vector<std::string> findEarlierBackups(
    const Vault& vault, const SealedFileRecord& record,
    const std::function<const std::vector<platform::FolderEntry>&(const std::string& folder)>& listing);

/// With Config2 at 1, copies a file of a listed database over its backup: beside it, flushed, renamed. Throws
/// BackupPlaceTaken where another database or a foreign file is there, base::FileFailure; what is there is
/// then as it was.
void writeBackupDatabase(Vault& vault, const std::string& file);

}  // namespace corvalence::store
