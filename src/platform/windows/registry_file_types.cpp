#include "platform/windows/registry_file_types.h"

#include "platform/windows/registry_key.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

std::optional<std::wstring> classText(const std::wstring& name) {
    const auto key = RegistryKey::open(HKEY_CLASSES_ROOT, name, KEY_QUERY_VALUE);
    return key.isOpen() ? key.text({}) : std::nullopt;
}

}  // namespace

std::optional<std::string> RegistryFileTypes::typeText(std::string_view extension) {
    const auto wide = toWide(extension);
    // A backslash would lead to a key of another name.
    if (!wide || wide->empty() || wide->find(L'\\') != std::wstring::npos) return std::nullopt;
    auto text = classText(*wide + L"file");
    if (!text) {
        const auto name = classText(L"." + *wide);
        if (name && !name->empty()) text = classText(*name);
    }
    if (!text) return std::nullopt;
    return toUtf8(*text);
}

}  // namespace corvalence::platform::windows_system
