#include "platform/windows/windows_registry.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "platform/windows/registry_key.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

/// The system's limits, in characters.
constexpr std::size_t kLongestKeyName = 256;
constexpr std::size_t kLongestValueName = 16384;

HKEY handleOf(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::ClassesRoot:
            return HKEY_CLASSES_ROOT;
        case RegistryRoot::CurrentUser:
            return HKEY_CURRENT_USER;
        case RegistryRoot::LocalMachine:
            return HKEY_LOCAL_MACHINE;
        case RegistryRoot::Users:
            return HKEY_USERS;
        case RegistryRoot::CurrentConfig:
            return HKEY_CURRENT_CONFIG;
    }
    return nullptr;
}

bool isText(std::uint32_t type) {
    return type == registry_type::kText || type == registry_type::kExpandableText ||
           type == registry_type::kLink;
}

std::string textOf(const std::vector<std::uint8_t>& data) {
    std::wstring wide(data.size() / sizeof(wchar_t), L'\0');
    if (!wide.empty()) std::memcpy(wide.data(), data.data(), wide.size() * sizeof(wchar_t));
    if (wide.ends_with(L'\0')) wide.pop_back();
    return toUtf8(wide);
}

class KeyReader : public RegistryKeyReader {
  public:
    KeyReader(RegistryKey key, DWORD count, DWORD longest)
        : key_(std::move(key)), count_(count), data_(std::max<std::size_t>(longest, 256)) {}

    bool nextValue(RegistryValue& value) override {
        DWORD nameLength = 0;
        DWORD type = 0;
        DWORD size = 0;
        LSTATUS result = ERROR_SUCCESS;
        do {
            // A value may have grown since the key was opened.
            if (result == ERROR_MORE_DATA) data_.resize(std::max<std::size_t>(size, data_.size() * 2));
            nameLength = static_cast<DWORD>(name_.size());
            size = static_cast<DWORD>(data_.size());
            result = ::RegEnumValueW(key_.get(), index_, name_.data(), &nameLength, nullptr, &type,
                                     data_.data(), &size);
        } while (result == ERROR_MORE_DATA);
        if (result == ERROR_NO_MORE_ITEMS || result == ERROR_KEY_DELETED) return false;
        value.type = 0;
        value.data.clear();
        value.text.clear();
        value.isReadable = result == ERROR_SUCCESS;
        if (value.isReadable) {
            value.name = toUtf8({name_.data(), nameLength});
            value.type = type;
            value.data.assign(data_.begin(), data_.begin() + static_cast<std::ptrdiff_t>(size));
            if (isText(type)) value.text = textOf(value.data);
        } else if (index_ < count_) {
            value.name = nameAlone();
        } else {
            return false;
        }
        ++index_;
        return true;
    }

    RegistryKeyNames subKeys() override {
        RegistryKeyNames keys;
        std::wstring name(kLongestKeyName, L'\0');
        LSTATUS result = ERROR_SUCCESS;
        for (DWORD index = 0;; ++index) {
            DWORD length = static_cast<DWORD>(name.size());
            result =
                ::RegEnumKeyExW(key_.get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
            if (result != ERROR_SUCCESS) break;
            keys.names.push_back(toUtf8({name.data(), length}));
        }
        keys.isComplete = result == ERROR_NO_MORE_ITEMS;
        return keys;
    }

  private:
    std::string nameAlone() {
        DWORD length = static_cast<DWORD>(name_.size());
        const LSTATUS result =
            ::RegEnumValueW(key_.get(), index_, name_.data(), &length, nullptr, nullptr, nullptr, nullptr);
        return result == ERROR_SUCCESS ? toUtf8({name_.data(), length}) : std::string();
    }

    RegistryKey key_;
    DWORD index_ = 0;
    DWORD count_;
    std::wstring name_ = std::wstring(kLongestValueName, L'\0');
    std::vector<std::uint8_t> data_;
};

}  // namespace

std::unique_ptr<RegistryKeyReader> WindowsRegistry::open(RegistryRoot root, const std::string& keyPath) {
    const auto path = toWide(keyPath);
    if (!path || path->find(L'\0') != std::wstring::npos) return nullptr;
    RegistryKey key = RegistryKey::open(handleOf(root), *path, KEY_READ);
    // The right to read for backup serves where the key's own rights refuse.
    if (!key.isOpen()) key = RegistryKey::open(handleOf(root), *path, KEY_READ, REG_OPTION_BACKUP_RESTORE);
    if (!key.isOpen()) return nullptr;
    DWORD count = 0;
    DWORD longest = 0;
    const LSTATUS result = ::RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                              &count, nullptr, &longest, nullptr, nullptr);
    if (result != ERROR_SUCCESS) return nullptr;
    return std::make_unique<KeyReader>(std::move(key), count, longest);
}

}  // namespace corvalence::platform::windows_system
