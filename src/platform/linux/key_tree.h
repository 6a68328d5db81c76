#pragma once

#include <concepts>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_system.h"

namespace corvalence::platform::linux_system {

/// The text of a value.
struct KeyText {
    KeyText() = default;
    template <std::convertible_to<std::string> Text>
    KeyText(Text&& value) : text(std::forward<Text>(value)) {}
    KeyText(std::string value, bool isSecret) : text(std::move(value)), isProtected(isSecret) {}

    std::string text;
    bool isProtected = false;  // only root can read where it comes from
};

/// A key as the registry shows it: texts by name, and the names of the keys below, each in an order that
/// stays.
struct KeyContent {
    std::vector<std::pair<std::string, KeyText>> values;
    std::vector<std::string> subKeys;
    bool isComplete = true;  // false where not all keys below could be listed
};

using KeyPath = std::vector<std::string>;

/// A part of the registry, from one source of the system.
class KeyTree {
  public:
    virtual ~KeyTree() = default;

    /// The key at a path below the tree's own; nothing where there is none.
    virtual std::optional<KeyContent> key(const KeyPath& path) = 0;
};

/// Keys that are gathered at once, anew each time the tree's own key is asked for.
class GatheredKeys : public KeyTree {
  public:
    /// Values by name of every key, by its path. Keys on the way to another one need no entry.
    using Keys = std::map<KeyPath, std::map<std::string, KeyText>>;

    explicit GatheredKeys(std::function<Keys()> gather) : gather_(std::move(gather)) {}
    std::optional<KeyContent> key(const KeyPath& path) override;

  private:
    std::function<Keys()> gather_;
    Keys keys_;
};

/// The settings files of a folder and of those below it, as key=value lines with or without sections: folders
/// and files are keys, and sections those below them. A file that holds any other line is none of them.
class SettingsFiles : public KeyTree {
  public:
    SettingsFiles(FileSystem& files, std::string folder) : files_(files), folder_(std::move(folder)) {}
    std::optional<KeyContent> key(const KeyPath& path) override;

  private:
    KeyContent folderKey(const std::string& folder);

    FileSystem& files_;
    std::string folder_;
};

/// A folder whose files each hold one value, as the kernel's parameters do. Left out is what changes by
/// itself.
class KernelParameters : public KeyTree {
  public:
    KernelParameters(FileSystem& files, std::string folder) : files_(files), folder_(std::move(folder)) {}
    std::optional<KeyContent> key(const KeyPath& path) override;

  private:
    FileSystem& files_;
    std::string folder_;
};

/// The path of a key's folder or file. Names of files may hold a backslash, which parts the names of keys:
/// there it stands as a slash, which no file's name holds.
std::string pathOfKey(const std::string& folder, const KeyPath& path);
std::string keyName(std::string fileName);

}  // namespace corvalence::platform::linux_system
