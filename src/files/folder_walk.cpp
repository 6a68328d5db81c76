#include "files/folder_walk.h"

#include <algorithm>
#include <array>

namespace corvalence::files {

namespace {

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

// Attribute words of folders: plain, archive, compressed, not content indexed, encrypted, and their mixtures
// with read only, hidden and system.
constexpr std::array<Range, 12> kFolderWords = {{
    {16, 23},
    {48, 55},
    {2064, 2071},
    {2096, 2103},
    {8208, 8211},
    {8240, 8248},
    {10256, 10259},
    {10288, 10295},
    {16400, 16403},
    {16432, 16435},
    {24592, 24595},
    {24624, 24627},
}};

}  // namespace

bool isFolderWord(std::uint32_t attributes) noexcept {
    for (const Range& range : kFolderWords) {
        if (attributes >= range.first && attributes <= range.last) return true;
    }
    return false;
}

void FolderWalk::run(const std::string& folder, const Visit& visit) {
    const std::string start = paths_.withSeparator(folder);
    try {
        const auto status = files_.status(start, platform::Follow::Yes);
        waiting_ = {{start, status ? status->identity.volume : 0}};
    } catch (const base::FileFailure& failure) {
        noteUnreadable(start, failure.cause());
    }
    while (!waiting_.empty()) {
        const Folder next = std::move(waiting_.back());
        waiting_.pop_back();
        if (!walkFolder(next, visit)) return;
    }
}

bool FolderWalk::walkFolder(const Folder& folder, const Visit& visit) {
    std::vector<platform::FolderEntry> entries;
    try {
        entries = files_.list(folder.path);
    } catch (const base::FileFailure& failure) {
        noteUnreadable(folder.path, failure.cause());
        return true;
    }
    for (const platform::FolderEntry& entry : entries) {
        const platform::FileStatus& status = entry.status;
        if (entry.name.front() == '.' && !complete_) {
            ++passedOver_.hiddenNames;
        } else if (entry.fault) {
            noteUnreadable(folder.path + entry.name, *entry.fault);
        } else if (status.kind == platform::FileKind::Link) {
            ++passedOver_.links;
        } else if (status.kind == platform::FileKind::Folder && isFolderWord(status.attributes)) {
            enterLater({folder.path + entry.name + paths_.separator, status.identity.volume}, folder.volume);
        } else if (!visit(folder.path + entry.name, status)) {
            return false;
        }
    }
    return true;
}

void FolderWalk::enterLater(Folder folder, std::uint64_t volumeAbove) {
    if (!barriers_.empty()) {
        const std::string_view bare = std::string_view(folder.path).substr(0, folder.path.size() - 1);
        if (std::binary_search(barriers_.begin(), barriers_.end(), bare)) return;
    }
    // Only where a volume begins is there anything to ask.
    if (folder.volume != volumeAbove && files_.isPseudo(folder.path)) {
        ++passedOver_.pseudoFileSystems;
    } else {
        waiting_.push_back(std::move(folder));
    }
}

void FolderWalk::noteUnreadable(const std::string& path, base::Cause cause) {
    passedOver_.unreadable.push_back({path, std::string(base::reasonText(cause))});
}

}  // namespace corvalence::files
