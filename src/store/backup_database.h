#pragma once

#include <string>

#include "base/path_rules.h"
#include "settings/configuration.h"
#include "store/vault.h"

namespace corvalence::store {

/// Where the backup database of `database` lies: beside it or in the folder of Config3, the suffix of Config1
/// put before the last full stop of the file name, or behind a name that has none.
std::string backupDatabasePath(const std::string& database, const settings::Configuration& configuration,
                               const base::PathRules& paths);

/// With Config2 at 1, copies the database over its backup database: beside it, flushed, renamed. Throws
/// base::FileFailure; the old backup is then as it was.
void writeBackupDatabase(Vault& vault, const std::string& database);

}  // namespace corvalence::store
