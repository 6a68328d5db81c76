#pragma once

#include <optional>
#include <string>

namespace corvalence::platform {

/// A text for each key path ("Software\Corvalence\Config5"): the default value of a registry key on Windows,
/// a member of one JSON object in a file on Linux. Key paths use a backslash on both.
class SettingsStore {
  public:
    virtual ~SettingsStore() = default;

    /// The text of a key; empty where the key is missing or the store cannot be read.
    virtual std::optional<std::string> read(const std::string& keyPath) = 0;
    /// False where it could not be stored; the old text then holds. The store is replaced whole, so that a
    /// crash leaves the old or the new state.
    virtual bool write(const std::string& keyPath, const std::string& text) = 0;
    /// Whether there is a store at all; false before an installation is made.
    virtual bool exists() = 0;
    /// Where the store lies; empty where it is no file.
    virtual std::string file() const { return {}; }
};

}  // namespace corvalence::platform
