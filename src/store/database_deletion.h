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

enum class DeletionResult {
    Declined,  // by the user; everything is as it was
    Deleted,
    Incomplete,  // the database is gone from the index; what is left of it was told
};

/// Deletes a database after asking: its index line, its backup pair, its lines in other lists, its files and
/// their backups, wiped where they are a numbered one's. What stands at one of these paths and holds
/// something else, or belongs to another database, is left and told. From the moment at which the index no
/// longer has it the deletion goes on past what fails; what a run that is ended leaves of it, the next start
/// removes. Throws base::FileFailure where nothing was deleted.
DeletionResult deleteDatabase(Vault& vault, const OpenDatabaseContext& context, DeletionListener& listener);

/// Takes a database back whose creation was not completed: all of the above without a question and without a
/// word unless something of it has to stay. Throws base::FileFailure where nothing was deleted.
void takeBackDatabase(Vault& vault, const IndexRecord& record);

}  // namespace corvalence::store
