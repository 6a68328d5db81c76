#pragma once

#include <string>

#include "store/database_deletion.h"
#include "store/vault.h"

namespace corvalence::schedule {

/// The sealed list "Database Checking Schedule": one line a database, path 0x7F …, CR LF, in the order of
/// checking.
class ScheduleList : public store::DeletionListener {
  public:
    explicit ScheduleList(store::Vault& vault) : vault_(vault) {}

    std::string path() const;

    /// Drops every line that begins with the path. The list is sealed anew only where one did. Throws
    /// base::FileFailure.
    void databaseDeleted(const std::string& path) override;

  private:
    store::Vault& vault_;
};

}  // namespace corvalence::schedule
