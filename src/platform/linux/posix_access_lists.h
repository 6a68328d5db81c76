#pragma once

#include "platform/access_lists.h"
#include "platform/linux/account_names.h"

namespace corvalence::platform::linux_system {

/// Needs the process file system at /proc.
class PosixAccessLists : public AccessLists {
  public:
    std::optional<std::vector<AccessEntry>> read(const std::string& path) override;
    std::size_t removeEntries(const std::string& path,
                              const std::function<bool(const AccessEntry&)>& isUnwanted) override;

  private:
    AccountNames names_;
};

}  // namespace corvalence::platform::linux_system
