#pragma once

#include <string>

#include "base/path_rules.h"
#include "platform/file_system.h"
#include "platform/settings_store.h"

namespace corvalence::platform {

/// Settings as one JSON object (RFC 8259) from key path to text, in a file that is read anew at every call. A
/// file that is no such object is left as it is: nothing is read from it and nothing written. Texts are
/// UTF-8; others cannot be written.
class JsonSettingsStore : public SettingsStore {
  public:
    /// `path` need not exist; the first write makes it, and its folder.
    JsonSettingsStore(FileSystem& files, std::string path, const base::PathRules& paths = {})
        : files_(files), path_(std::move(path)), paths_(paths) {}

    std::optional<std::string> read(const std::string& keyPath) override;
    bool write(const std::string& keyPath, const std::string& text) override;
    bool exists() override;
    std::string file() const override { return path_; }

  private:
    void replace(const std::string& text);

    FileSystem& files_;
    std::string path_;
    base::PathRules paths_;
};

}  // namespace corvalence::platform
