#pragma once

#include <cstddef>
#include <vector>

#include "files/backup_index.h"
#include "platform/user_interface.h"
#include "store/vault.h"

namespace corvalence::files {

/// Writes container and list anew with the entries of `order`, numbers in `index`, in that order; what is not
/// in it goes. Both are written beside the old ones in one pass and renamed together. False where the user
/// cancelled: both are then as they were. A container that is too short is filled up with zeros, so that
/// every entry keeps its length. Throws base::FileFailure; both are then as they were.
bool rewriteBackups(store::Vault& vault, const store::BackupPair& pair, const BackupIndex& index,
                    const std::vector<std::size_t>& order, platform::Progress& progress);

/// The order in which the entries from `firstNew` on stand in the places of the earlier ones of their paths;
/// further entries of such a path are left out, and a new one that replaces nothing stays at the end.
std::vector<std::size_t> orderWithReplacements(const BackupIndex& index, std::size_t firstNew);

}  // namespace corvalence::files
