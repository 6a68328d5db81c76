#include "platform/windows/account_lookup.h"

#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

Account lookUp(PSID sid) {
    std::wstring name(1024, L'\0');
    std::wstring domain(1024, L'\0');
    for (;;) {
        auto nameLength = static_cast<DWORD>(name.size());
        auto domainLength = static_cast<DWORD>(domain.size());
        SID_NAME_USE use = SidTypeUnknown;
        if (::LookupAccountSidW(nullptr, sid, name.data(), &nameLength, domain.data(), &domainLength, &use) !=
            FALSE) {
            return {AccountState::Known, toUtf8(name.c_str()), toUtf8(domain.c_str())};
        }
        const DWORD error = ::GetLastError();
        if (error == ERROR_NONE_MAPPED) return {AccountState::Unnamed, {}, {}};
        if (error != ERROR_INSUFFICIENT_BUFFER ||
            (nameLength <= name.size() && domainLength <= domain.size())) {
            return {};
        }
        name.resize(nameLength);
        domain.resize(domainLength);
    }
}

}  // namespace

const Account& AccountLookup::of(PSID sid) {
    const auto now = std::chrono::steady_clock::now();
    if (now - since_ >= std::chrono::minutes(1)) {
        known_.clear();
        since_ = now;
    }
    const std::string key(static_cast<const char*>(sid), ::GetLengthSid(sid));
    const auto [place, isNew] = known_.try_emplace(key);
    if (isNew) place->second = lookUp(sid);
    return place->second;
}

}  // namespace corvalence::platform::windows_system
