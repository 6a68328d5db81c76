#pragma once

#include "platform/access_lists.h"
#include "platform/windows/account_lookup.h"

namespace corvalence::platform::windows_system {

/// Discretionary access lists. Allowing and denying entries are told alike.
class WindowsAccessLists : public AccessLists {
  public:
    std::optional<std::vector<AccessEntry>> read(const std::string& path) override;
    std::size_t removeEntries(const std::string& path,
                              const std::function<bool(const AccessEntry&)>& isUnwanted) override;

  private:
    AccessEntry tell(void* entry);

    AccountLookup accounts_;
};

}  // namespace corvalence::platform::windows_system
