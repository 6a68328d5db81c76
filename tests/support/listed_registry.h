#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/system_registry.h"

namespace corvalence::test {

/// A registry of keys and values in the order in which a test sets them.
class ListedRegistry : public platform::SystemRegistry {
  public:
    struct Key {
        std::vector<platform::RegistryValue> values;
        std::vector<std::string> subKeys;
        bool isComplete = true;
        bool isClosed = false;  // to everybody
    };

    /// The key, made with those above it where it is missing.
    Key& key(platform::RegistryRoot root, const std::string& path) {
        const auto [place, isNew] = keys_.try_emplace({root, path});
        if (isNew && !path.empty()) {
            const std::size_t at = path.rfind('\\');
            Key& above = key(root, at == std::string::npos ? std::string() : path.substr(0, at));
            above.subKeys.push_back(at == std::string::npos ? path : path.substr(at + 1));
        }
        return place->second;
    }

    std::unique_ptr<platform::RegistryKeyReader> open(platform::RegistryRoot root,
                                                      const std::string& keyPath) override {
        const Key& opened = key(root, keyPath);
        return opened.isClosed ? nullptr : std::make_unique<Reader>(opened);
    }

  private:
    class Reader : public platform::RegistryKeyReader {
      public:
        explicit Reader(const Key& key) : key_(key) {}
        bool nextValue(platform::RegistryValue& value) override {
            if (next_ == key_.values.size()) return false;
            value = key_.values[next_++];
            return true;
        }
        platform::RegistryKeyNames subKeys() override { return {key_.subKeys, key_.isComplete}; }

      private:
        const Key& key_;
        std::size_t next_ = 0;
    };

    std::map<std::pair<platform::RegistryRoot, std::string>, Key> keys_;
};

}  // namespace corvalence::test
