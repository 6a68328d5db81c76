#include "platform/windows/registry_key.h"

namespace corvalence::platform::windows_system {

RegistryKey RegistryKey::open(HKEY root, const std::wstring& path, REGSAM access, DWORD options) {
    RegistryKey key;
    if (::RegOpenKeyExW(root, path.c_str(), options, access, &key.key_) != ERROR_SUCCESS) key.key_ = nullptr;
    return key;
}

RegistryKey RegistryKey::create(HKEY root, const std::wstring& path, REGSAM access) {
    RegistryKey key;
    if (::RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, &key.key_,
                          nullptr) != ERROR_SUCCESS) {
        key.key_ = nullptr;
    }
    return key;
}

std::optional<std::wstring> RegistryKey::text(const std::wstring& name) const {
    DWORD type = 0;
    DWORD size = 512;
    std::wstring text;
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {  // once more where another program made it longer meanwhile
        text.resize(size / sizeof(wchar_t) + 1);
        size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        status = ::RegQueryValueExW(key_, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(text.data()),
                                    &size);
    }
    if (status != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return std::nullopt;
    text.resize(size / sizeof(wchar_t));
    // A text ends at its first zero, and need not have one.
    text.resize(text.find(L'\0') == std::wstring::npos ? text.size() : text.find(L'\0'));
    return text;
}

bool RegistryKey::setText(const std::wstring& name, const std::wstring& text) const {
    const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    return ::RegSetValueExW(key_, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                            size) == ERROR_SUCCESS;
}

}  // namespace corvalence::platform::windows_system
