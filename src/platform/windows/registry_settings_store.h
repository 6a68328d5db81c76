#pragma once

#include "platform/settings_store.h"

namespace corvalence::platform::windows_system {

/// Settings as default values of keys in the registry tree of the current user. Texts are UTF-8 without zero
/// bytes; others cannot be written. A text that a program wrote there is read whole, however long.
class RegistrySettingsStore : public SettingsStore {
  public:
    /// Keys lie below the key `below` of the current user, which ends in a backslash or is empty.
    explicit RegistrySettingsStore(std::string below = {}) : below_(std::move(below)) {}

    std::optional<std::string> read(const std::string& keyPath) override;
    bool write(const std::string& keyPath, const std::string& text) override;
    /// Whether the product's key is there.
    bool exists() override;

  private:
    std::string below_;
};

}  // namespace corvalence::platform::windows_system
