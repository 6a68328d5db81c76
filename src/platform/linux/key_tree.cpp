#include "platform/linux/key_tree.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/linux/settings_text.h"
#include "platform/linux/small_files.h"

namespace corvalence::platform::linux_system {

namespace {

/// Settings are written by hand or a page long; what is larger holds data.
constexpr std::size_t kLongestSettings = 256 * 1024;
constexpr std::size_t kLongestParameter = 64 * 1024;

/// Folders of programs that keep there what they have fetched or seen, not what they were told.
constexpr std::array<std::string_view, 6> kCaches = {"Cache",   "Code Cache",    "GPUCache",
                                                     "Crashes", "Crash Reports", "Session Storage"};

/// Parameters that the kernel itself changes: counters, random numbers, what it measured, and what only takes
/// orders.
constexpr std::array<std::string_view, 19> kUnsteady = {
    "fs/aio-nr",
    "fs/dentry-state",
    "fs/file-nr",
    "fs/inode-nr",
    "fs/inode-state",
    "fs/quota",
    "kernel/ns_last_pid",
    "kernel/perf_event_max_sample_rate",
    "kernel/pty/nr",
    "kernel/random/boot_id",
    "kernel/random/entropy_avail",
    "kernel/random/uuid",
    "kernel/tainted",
    "net/ipv4/route/flush",
    "net/ipv6/route/flush",
    "net/netfilter/nf_conntrack_count",
    "vm/compact_memory",
    "vm/drop_caches",
    "vm/stat_refresh",
};

template <std::size_t N>
bool isAmong(const std::array<std::string_view, N>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool startsWith(const KeyPath& path, const KeyPath& start) {
    return path.size() >= start.size() && std::equal(start.begin(), start.end(), path.begin());
}

std::optional<FileStatus> statusOf(FileSystem& files, const std::string& path, Follow follow) {
    try {
        return files.status(path, follow);
    } catch (const base::FileFailure&) {
        return std::nullopt;
    }
}

std::optional<SettingsText> settingsIn(FileSystem& files, const std::string& path) {
    const auto status = statusOf(files, path, Follow::Yes);
    if (!status || status->kind != FileKind::Regular || status->size > kLongestSettings) return std::nullopt;
    const auto text = shortContent(files, path, kLongestSettings);
    return text ? parseSettings(*text) : std::nullopt;
}

KeyContent sectionKey(const SettingsText& settings, const std::string& name, const std::string& file) {
    const bool isProtected = isForRootAlone(file);
    KeyContent content;
    for (const SettingsSection& section : settings.sections) {
        if (section.name == name) {
            for (const auto& [key, text] : section.values)
                content.values.emplace_back(key, KeyText(text, isProtected));
        }
        if (name.empty() && !section.name.empty()) content.subKeys.push_back(keyName(section.name));
    }
    return content;
}

}  // namespace

std::optional<KeyContent> GatheredKeys::key(const KeyPath& path) {
    if (path.empty()) keys_ = gather_();
    KeyContent content;
    auto key = keys_.lower_bound(path);
    if (key == keys_.end() || !startsWith(key->first, path)) {
        return path.empty() ? std::optional(content) : std::nullopt;
    }
    if (key->first == path) content.values.assign(key->second.begin(), key->second.end());
    for (; key != keys_.end() && startsWith(key->first, path); ++key) {
        if (key->first.size() == path.size()) continue;
        const std::string& below = key->first[path.size()];
        if (content.subKeys.empty() || content.subKeys.back() != below) content.subKeys.push_back(below);
    }
    return content;
}

KeyContent SettingsFiles::folderKey(const std::string& folder) {
    KeyContent content;
    for (const FolderEntry& entry : entriesOrNone(files_, folder, content.isComplete)) {
        const bool isFolder = entry.status.kind == FileKind::Folder && !isAmong(kCaches, entry.name);
        if (isFolder ||
            (entry.status.kind != FileKind::Folder && settingsIn(files_, folder + "/" + entry.name)))
            content.subKeys.push_back(keyName(entry.name));
    }
    return content;
}

std::optional<KeyContent> SettingsFiles::key(const KeyPath& path) {
    const std::string here = pathOfKey(folder_, path);
    const auto status = statusOf(files_, here, Follow::No);
    if (status && status->kind == FileKind::Folder) return folderKey(here);
    if (const auto settings = settingsIn(files_, here)) return sectionKey(*settings, "", here);
    if (path.empty()) return KeyContent{};  // a user without settings
    // A section of a file.
    const std::string file = pathOfKey(folder_, {path.begin(), path.end() - 1});
    const auto settings = settingsIn(files_, file);
    if (!settings) return std::nullopt;
    for (const SettingsSection& section : settings->sections)
        if (keyName(section.name) == path.back()) return sectionKey(*settings, section.name, file);
    return std::nullopt;
}

std::optional<KeyContent> KernelParameters::key(const KeyPath& path) {
    const std::string here = pathOfKey(folder_, path);
    const auto status = statusOf(files_, here, Follow::No);
    if (!status || status->kind != FileKind::Folder) {
        return path.empty() ? std::optional(KeyContent{}) : std::nullopt;
    }
    KeyContent content;
    for (const FolderEntry& entry : entriesOrNone(files_, here, content.isComplete)) {
        const std::string file = here + "/" + entry.name;
        if (isAmong(kUnsteady, std::string_view(file).substr(folder_.size() + 1))) continue;
        if (entry.status.kind == FileKind::Folder) {
            content.subKeys.push_back(keyName(entry.name));
        } else if (auto text = shortContent(files_, file, kLongestParameter)) {
            while (text->ends_with('\n'))
                text->pop_back();
            content.values.emplace_back(keyName(entry.name), KeyText(std::move(*text), isForRootAlone(file)));
        }
    }
    return content;
}

std::string pathOfKey(const std::string& folder, const KeyPath& path) {
    std::string result = folder;
    for (std::string name : path) {
        std::replace(name.begin(), name.end(), '/', '\\');
        result += "/" + name;
    }
    return result;
}

std::string keyName(std::string fileName) {
    std::replace(fileName.begin(), fileName.end(), '\\', '/');
    return fileName;
}

}  // namespace corvalence::platform::linux_system
