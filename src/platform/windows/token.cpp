#include "platform/windows/token.h"

#include <sddl.h>

#include <system_error>

namespace corvalence::platform::windows_system {

namespace {

[[noreturn]] void refuse(const char* what) {
    throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), what);
}

}  // namespace

Handle openToken(DWORD access) {
    HANDLE token = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), access, &token)) refuse("OpenProcessToken");
    return Handle(token);
}

std::vector<std::byte> tokenInformation(const Handle& token, TOKEN_INFORMATION_CLASS kind) {
    DWORD size = 0;
    ::GetTokenInformation(token.get(), kind, nullptr, 0, &size);
    std::vector<std::byte> bytes(size);
    if (!::GetTokenInformation(token.get(), kind, bytes.data(), size, &size)) refuse("GetTokenInformation");
    return bytes;
}

std::wstring userSidText() {
    const auto bytes = tokenInformation(openToken(TOKEN_QUERY), TokenUser);
    LocalMemory<LPWSTR> text;
    if (!::ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(bytes.data())->User.Sid, text.out())) {
        refuse("ConvertSidToStringSid");
    }
    return text.get();
}

bool setPrivilege(const wchar_t* name, bool enabled) noexcept {
    HANDLE opened = nullptr;
    TOKEN_PRIVILEGES wanted{};
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &opened))
        return false;
    const Handle token(opened);
    wanted.PrivilegeCount = 1;
    wanted.Privileges[0].Attributes = enabled ? SE_PRIVILEGE_ENABLED : 0;
    if (!::LookupPrivilegeValueW(nullptr, name, &wanted.Privileges[0].Luid)) return false;
    // The call succeeds where the account lacks the privilege; only the error tells.
    return ::AdjustTokenPrivileges(token.get(), FALSE, &wanted, 0, nullptr, nullptr) != FALSE &&
           ::GetLastError() == ERROR_SUCCESS;
}

}  // namespace corvalence::platform::windows_system
