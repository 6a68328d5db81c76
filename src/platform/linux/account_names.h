#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <unordered_map>

namespace corvalence::platform::linux_system {

/// Names of users and groups; a number that no name belongs to stands for itself. An answer holds for a
/// minute, since asking may lead over the network and every file of a machine asks.
class AccountNames {
  public:
    const std::string& user(uid_t id);
    const std::string& group(gid_t id);

  private:
    using Names = std::unordered_map<id_t, std::string>;
    void forgetOldNames();

    Names users_;
    Names groups_;
    std::chrono::steady_clock::time_point since_ = std::chrono::steady_clock::now();
};

}  // namespace corvalence::platform::linux_system
