#pragma once

#include <windows.h>

#include <chrono>
#include <string>
#include <unordered_map>

#include "platform/access_lists.h"

namespace corvalence::platform::windows_system {

struct Account {
    AccountState state = AccountState::Failed;
    std::string name;
    std::string domain;
};

/// Names of accounts by their security identifiers. An answer holds for a minute, since asking may lead over
/// the network and every file of a machine asks.
class AccountLookup {
  public:
    /// `sid` is a valid identifier.
    const Account& of(PSID sid);

  private:
    std::unordered_map<std::string, Account> known_;
    std::chrono::steady_clock::time_point since_ = std::chrono::steady_clock::now();
};

}  // namespace corvalence::platform::windows_system
