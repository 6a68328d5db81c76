#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <utility>

namespace corvalence::platform::windows_system {

/// Owns an open registry key.
class RegistryKey {
  public:
    RegistryKey() = default;
    RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
    RegistryKey& operator=(RegistryKey&& other) noexcept {
        std::swap(key_, other.key_);
        return *this;
    }
    ~RegistryKey() {
        if (key_ != nullptr) ::RegCloseKey(key_);
    }

    /// Not open where the key is missing or closed to the caller. `options` are those of the system's call.
    static RegistryKey open(HKEY root, const std::wstring& path, REGSAM access, DWORD options = 0);
    /// The same, but makes what is missing of the path.
    static RegistryKey create(HKEY root, const std::wstring& path, REGSAM access);

    bool isOpen() const noexcept { return key_ != nullptr; }
    HKEY get() const noexcept { return key_; }

    /// The text of a value ("" is the default value), of any length; empty where it is missing or no text.
    /// References to environment variables stay as they are.
    std::optional<std::wstring> text(const std::wstring& name) const;
    /// False where it could not be stored.
    bool setText(const std::wstring& name, const std::wstring& text) const;

  private:
    HKEY key_ = nullptr;
};

}  // namespace corvalence::platform::windows_system
