#include "platform/windows/owner_only.h"

#include <sddl.h>

#include <system_error>

#include "platform/windows/token.h"

namespace corvalence::platform::windows_system {

namespace {

void make(const std::wstring& inherited, const std::wstring& user, PSECURITY_DESCRIPTOR* descriptor) {
    const std::wstring all = L"(A;" + inherited + L";FA;;;";
    const std::wstring text = L"D:P" + all + user + L")" + all + L"BA)" + all + L"SY)";
    if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1, descriptor,
                                                                nullptr)) {
        throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(),
                                "ConvertStringSecurityDescriptor");
    }
}

}  // namespace

OwnerOnly::OwnerOnly() {
    const std::wstring user = userSidText();
    make(L"", user, file_.out());
    make(L"OICI", user, folder_.out());
}

}  // namespace corvalence::platform::windows_system
