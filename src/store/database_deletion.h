#pragma once

#include <string>

#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::store {

/// Told before a database goes, so that lists which name it can drop it: the schedule, the recent databases.
class DeletionListener {
  public:
    virtual ~DeletionListener() = default;
    virtual void databaseDeleted(const std::string& path) = 0;
};

/// Deletes a database after asking: its index line, its backup pair, its lines in other lists, itself and its
/// backup database, both wiped. What stands at one of these paths and holds something else, or belongs to
/// another database, is left and told. False where the user said no. Throws base::FileFailure.
bool deleteDatabase(Vault& vault, const OpenDatabaseContext& context, DeletionListener& listener);

}  // namespace corvalence::store
