#pragma once

#include <cstdint>
#include <string>
#include <string_view>

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

/// Behind the name of a container that lost its list and makes way for a new one.
inline constexpr std::string_view kSetAsideSuffix = ".old";

/// Whether a file of that name is such a container.
bool isSetAside(std::string_view name) noexcept;

/// The highest N of the pairs that lie in the folder; 0 where there are none.
std::int64_t highestBackupPair(Vault& vault);

}  // namespace corvalence::store
