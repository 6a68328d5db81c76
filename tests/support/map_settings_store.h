#pragma once

#include <map>
#include <string>

#include "platform/settings_store.h"

namespace corvalence::test {

/// Settings in memory, which can be made to refuse writing.
class MapSettingsStore : public platform::SettingsStore {
  public:
    std::map<std::string, std::string> texts;
    bool refusesWriting = false;

    std::optional<std::string> read(const std::string& keyPath) override {
        const auto found = texts.find(keyPath);
        if (found == texts.end()) return std::nullopt;
        return found->second;
    }
    bool write(const std::string& keyPath, const std::string& text) override {
        if (refusesWriting) return false;
        texts[keyPath] = text;
        return true;
    }
    bool exists() override { return !texts.empty(); }
};

}  // namespace corvalence::test
