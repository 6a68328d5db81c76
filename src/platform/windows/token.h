#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

#include "platform/windows/handle.h"

namespace corvalence::platform::windows_system {

/// This process's access token. Throws std::system_error.
Handle openToken(DWORD access);

/// One kind of what a token holds; the bytes begin with the structure that goes with the kind.
std::vector<std::byte> tokenInformation(const Handle& token, TOKEN_INFORMATION_CLASS kind);

/// Who runs the program, as "S-1-5-...".
std::wstring userSidText();

/// Turns a privilege of this process on or off; false where the account does not have it.
bool setPrivilege(const wchar_t* name, bool enabled) noexcept;

/// A privilege that is on while this lives, where the account has it; without it the work goes on.
class Privilege {
  public:
    explicit Privilege(const wchar_t* name) noexcept : name_(name) { setPrivilege(name_, true); }
    ~Privilege() { setPrivilege(name_, false); }
    Privilege(const Privilege&) = delete;
    Privilege& operator=(const Privilege&) = delete;

  private:
    const wchar_t* name_;
};

}  // namespace corvalence::platform::windows_system
