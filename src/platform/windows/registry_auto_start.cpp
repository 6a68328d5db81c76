#include "platform/windows/registry_auto_start.h"

#include "platform/windows/registry_key.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

constexpr const wchar_t* kName = L"Corvalence";

}  // namespace

std::wstring RegistryAutoStart::key() const {
    return toWide(below_ + "Software\\Microsoft\\Windows\\CurrentVersion\\Run").value();
}

bool RegistryAutoStart::enable(const std::string& program) {
    const auto wide = toWide(program);
    if (!wide) return false;
    const std::wstring line = L"\"" + *wide + L"\" /Background";
    const auto run = RegistryKey::create(HKEY_CURRENT_USER, key(), KEY_SET_VALUE);
    if (run.isOpen() && run.setText(kName, line)) return true;
    // A key of that name serves where the value is closed to us.
    const auto own = RegistryKey::create(HKEY_CURRENT_USER, key() + L"\\" + kName, KEY_SET_VALUE);
    return own.isOpen() && own.setText({}, line);
}

bool RegistryAutoStart::disable() {
    const auto run = RegistryKey::create(HKEY_CURRENT_USER, key(), KEY_SET_VALUE);
    return run.isOpen() && run.setText(kName, {});
}

bool RegistryAutoStart::isEnabled() {
    const auto run = RegistryKey::open(HKEY_CURRENT_USER, key(), KEY_QUERY_VALUE);
    return run.isOpen() && !run.text(kName).value_or(L"").empty();
}

}  // namespace corvalence::platform::windows_system
