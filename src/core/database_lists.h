#pragma once

#include "schedule/schedule_list.h"
#include "store/recent_list.h"

namespace corvalence::core {

/// All lists that name databases and drop one that is deleted.
class DatabaseLists : public store::DeletionListener {
  public:
    explicit DatabaseLists(store::Vault& vault)
        : schedule_(vault), recent_(vault.configuration, vault.session) {}

    void databaseDeleted(const std::string& path) override {
        recent_.databaseDeleted(path);
        schedule_.databaseDeleted(path);
    }

  private:
    schedule::ScheduleList schedule_;
    store::RecentList recent_;
};

}  // namespace corvalence::core
