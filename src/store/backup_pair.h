#pragma once

#include <cstdint>
#include <string>

#include "store/vault.h"

namespace corvalence::store {

/// "Backup File N" and "Backup Index N" in the Backup Files Directory.
struct BackupPair {
    std::string file;
    std::string index;
};

BackupPair backupPair(const settings::Configuration& configuration, std::int64_t number);

/// Makes both files empty. Throws base::FileFailure; one that is there already is never touched.
void createBackupPair(Vault& vault, std::int64_t number);

/// Removes what there is of the pair. Both hold ciphertext or what the user chose to keep plain, so nothing
/// is wiped.
void removeBackupPair(Vault& vault, std::int64_t number);

/// The highest N of the pairs that lie in the folder; 0 where there are none.
std::int64_t highestBackupPair(Vault& vault);

}  // namespace corvalence::store
