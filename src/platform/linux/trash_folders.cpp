#include "platform/linux/trash_folders.h"

#include <pwd.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "base/path_rules.h"
#include "platform/linux/small_files.h"
#include "platform/linux/status_query.h"

namespace corvalence::platform::linux_system {

namespace {

constexpr base::PathRules kPaths;
constexpr std::string_view kRecordEnding = ".trashinfo";
/// A record is a few lines and one path; anything larger is none.
constexpr std::size_t kLongestRecord = 64 * 1024;

std::optional<unsigned> hexDigit(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10U;
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10U;
    return std::nullopt;
}

/// A path as records write it: bytes may stand as "%" and two hexadecimal digits.
std::string decoded(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto high = text[at] == '%' && at + 2 < text.size() ? hexDigit(text[at + 1]) : std::nullopt;
        const auto low = high ? hexDigit(text[at + 2]) : std::nullopt;
        plain.push_back(low ? static_cast<char>(*high << 4 | *low) : text[at]);
        if (low) at += 2;
    }
    return plain;
}

/// The original path that a record gives; empty where it gives none.
std::string pathIn(std::string_view record) {
    constexpr std::string_view kKey = "Path=";
    for (std::size_t at = 0; at < record.size();) {
        const std::size_t end = std::min(record.find('\n', at), record.size());
        std::string_view line = record.substr(at, end - at);
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.starts_with(kKey)) return decoded(line.substr(kKey.size()));
        at = end + 1;
    }
    return {};
}

bool isNumber(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

TrashPlaces trashPlaces(Volumes& volumes) {
    TrashPlaces places;
    if (const char* const data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data == '/') {
        places.homes.push_back(kPaths.join(data, "Trash"));
    }
    ::setpwent();
    while (const struct passwd* const user = ::getpwent())
        places.homes.push_back(kPaths.join(user->pw_dir, ".local/share/Trash"));
    ::endpwent();
    // Several accounts may share a home.
    std::sort(places.homes.begin(), places.homes.end());
    places.homes.erase(std::unique(places.homes.begin(), places.homes.end()), places.homes.end());
    places.volumes = volumes.walkRoots().roots;
    return places;
}

std::vector<FolderEntry> TrashFolders::entriesOf(const std::string& folder) {
    try {
        return files_.list(folder);
    } catch (const base::FileFailure& failure) {
        const base::Cause cause = failure.cause();
        if (cause == base::Cause::FileNotFound || cause == base::Cause::BadPath ||
            cause == base::Cause::AccessDenied) {
            return {};
        }
        throw;
    }
}

void TrashFolders::addItems(const std::string& trash, const std::string& base,
                            std::vector<RecycledItem>& items) {
    std::unordered_map<std::string, FileKind> kept;
    for (FolderEntry& entry : entriesOf(trash + "/files"))
        kept.emplace(std::move(entry.name), entry.status.kind);
    if (kept.empty()) return;
    for (const FolderEntry& entry : entriesOf(trash + "/info")) {
        std::string_view name = entry.name;
        if (entry.status.kind != FileKind::Regular || !name.ends_with(kRecordEnding)) continue;
        name.remove_suffix(kRecordEnding.size());
        const auto file = kept.find(std::string(name));
        if (file == kept.end()) continue;  // taken back or wiped, only its record was left
        std::string path;
        try {
            path = pathIn(readShort(files_, trash + "/info/" + entry.name, kLongestRecord).value_or(""));
        } catch (const base::FileFailure&) {
            continue;  // the item went while the folder was read, or is another user's
        }
        while (path.size() > 1 && path.ends_with('/'))
            path.pop_back();
        if (path.empty()) continue;
        if (path.front() != '/') path = kPaths.join(base, path);
        items.push_back({std::move(path), file->second == FileKind::Folder});
    }
}

std::vector<std::string> TrashFolders::trashesOf(const std::string& volume) {
    constexpr std::string_view kOwn = ".Trash-";
    std::vector<std::string> trashes;
    for (const FolderEntry& entry : entriesOf(volume)) {
        if (entry.status.kind != FileKind::Folder) continue;  // a link would lead to another volume
        const std::string path = kPaths.join(volume, entry.name);
        if (entry.name.starts_with(kOwn) && isNumber(std::string_view(entry.name).substr(kOwn.size())))
            trashes.push_back(path);
        if (entry.name != ".Trash") continue;
        for (const FolderEntry& user : entriesOf(path)) {
            if (user.status.kind == FileKind::Folder && isNumber(user.name))
                trashes.push_back(kPaths.join(path, user.name));
        }
    }
    return trashes;
}

std::vector<RecycledItem> TrashFolders::items() {
    std::vector<RecycledItem> items;
    const TrashPlaces places = places_();
    for (const std::string& home : places.homes)
        addItems(home, folderOf(home), items);
    for (const std::string& volume : places.volumes) {
        for (const std::string& trash : trashesOf(volume))
            addItems(trash, volume, items);
    }
    std::sort(items.begin(), items.end(), [](const RecycledItem& a, const RecycledItem& b) {
        return std::tie(a.originalPath, a.isFolder) < std::tie(b.originalPath, b.isFolder);
    });
    return items;
}

}  // namespace corvalence::platform::linux_system
