#pragma once

#include <functional>

#include "crypto/sealed_stream.h"
#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::store {

/// Saves the open database: seals what `content` writes beside the database, flushes it, puts its digest into
/// the index, renames it over the database and copies it to the backup database. A crash at any point leaves
/// a database that verifies, at the latest when the next start has carried the save on. The context's digest
/// is brought up to date. Throws base::FileFailure; the old state then holds, unless only the copy to the
/// backup database failed: context and database are then the new ones, and the next start tries the copy
/// again.
void saveDatabase(Vault& vault, OpenDatabaseContext& context,
                  const std::function<void(crypto::SealWriter&)>& content);

}  // namespace corvalence::store
