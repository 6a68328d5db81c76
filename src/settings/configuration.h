#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/settings_store.h"
#include "platform/user_interface.h"
#include "settings/configuration_keys.h"

namespace corvalence::settings {

/// The configuration keys, read and written one at a time at the moment of an operation; nothing is kept.
///
/// A key that cannot be read shows "Registry error." and its fall-back is used; a text that does not parse or
/// lies outside the key's range silently gives the fall-back. Neither ever ends an operation.
class Configuration {
  public:
    Configuration(platform::SettingsStore& store, platform::UserInterface& ui) : store_(store), ui_(ui) {}

    /// The key's text after range and fall-back. `name` is one of the table's.
    std::string text(std::string_view name) const;
    int number(std::string_view name) const;
    bool isOn(std::string_view name) const { return number(name) == 1; }
    /// A folder key, with a closing separator. Throws base::FileFailure (BadPath) where the key has no text:
    /// it must never stand for the folder that the program was started in.
    std::string folder(std::string_view name) const;

    /// The stored text as it is, or nothing where the key is missing. Shows no message.
    std::optional<std::string> stored(std::string_view name) const;
    /// Stores a text as it is. False, after "Registry error.", where that failed.
    bool write(std::string_view name, const std::string& text);
    /// The same without a message, for what nobody has to know about.
    bool writeQuietly(std::string_view name, const std::string& text);

    /// Config17 "N": stretches of the backup container are sealed. Any other text means plain.
    bool encryptsBackups() const { return text(key::kEncryptBackups) == "N"; }

  private:
    platform::SettingsStore& store_;
    platform::UserInterface& ui_;
};

/// `text` where the key may have it on reading, else the key's fall-back.
std::string acceptedText(const ConfigurationKey& key, const std::string& text);

}  // namespace corvalence::settings
