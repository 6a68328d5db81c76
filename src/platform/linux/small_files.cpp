#include "platform/linux/small_files.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace corvalence::platform::linux_system {

std::optional<std::string> readShort(FileSystem& files, const std::string& path, std::size_t limit) {
    const auto file = files.openShared(path);
    std::string content(std::min<std::size_t>(static_cast<std::size_t>(file->size()), limit) + 4096, '\0');
    std::size_t size = 0;
    while (const std::size_t count =
               file->read({reinterpret_cast<std::uint8_t*>(content.data()) + size, content.size() - size})) {
        size += count;
        if (size > limit) return std::nullopt;
        if (size == content.size()) content.resize(size * 2);
    }
    content.resize(size);
    return content;
}

std::optional<std::string> shortContent(FileSystem& files, const std::string& path, std::size_t limit) {
    try {
        return readShort(files, path, limit);
    } catch (const base::FileFailure&) {
        return std::nullopt;
    }
}

std::vector<FolderEntry> entriesOrNone(FileSystem& files, const std::string& folder, bool& isComplete) {
    try {
        return files.list(folder);
    } catch (const base::FileFailure&) {
        isComplete = false;
        return {};
    }
}

std::vector<FolderEntry> entriesOrNone(FileSystem& files, const std::string& folder) {
    bool isComplete = true;
    return entriesOrNone(files, folder, isComplete);
}

bool isForRootAlone(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    if (!resolved) return false;
    const auto isClosed = [](const std::string& place, mode_t bit) {
        struct stat status {};
        return ::stat(place.c_str(), &status) == 0 && status.st_uid == 0 && (status.st_mode & bit) == 0;
    };
    std::string place = resolved.get();
    if (isClosed(place, S_IROTH)) return true;
    while (place.size() > 1) {
        place.resize(std::max<std::size_t>(place.rfind('/'), 1));
        if (isClosed(place, S_IXOTH)) return true;
    }
    return false;
}

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view kBlanks = " \t\r\f";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace corvalence::platform::linux_system
