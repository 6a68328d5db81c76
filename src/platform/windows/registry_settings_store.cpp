#include "platform/windows/registry_settings_store.h"

#include "platform/windows/registry_key.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

constexpr const char* kProduct = "Software\\Corvalence";

}  // namespace

std::optional<std::string> RegistrySettingsStore::read(const std::string& keyPath) {
    const auto path = toWide(below_ + keyPath);
    if (!path) return std::nullopt;
    const auto key = RegistryKey::open(HKEY_CURRENT_USER, *path, KEY_QUERY_VALUE);
    if (!key.isOpen()) return std::nullopt;
    const auto text = key.text({});
    if (!text) return std::nullopt;
    return toUtf8(*text);
}

bool RegistrySettingsStore::write(const std::string& keyPath, const std::string& text) {
    const auto path = toWide(below_ + keyPath);
    const auto wide = toWide(text);
    if (!path || !wide || text.find('\0') != std::string::npos) return false;
    const auto key = RegistryKey::create(HKEY_CURRENT_USER, *path, KEY_SET_VALUE);
    return key.isOpen() && key.setText({}, *wide);
}

bool RegistrySettingsStore::exists() {
    return RegistryKey::open(HKEY_CURRENT_USER, *toWide(below_ + kProduct), KEY_QUERY_VALUE).isOpen();
}

}  // namespace corvalence::platform::windows_system
