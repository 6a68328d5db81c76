#include "files/folder_walk.h"

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
    std::vector<std::string> waiting = {paths_.withSeparator(folder)};
    while (!waiting.empty()) {
        const std::string next = std::move(waiting.back());
        waiting.pop_back();
        if (!walkFolder(next, waiting, visit)) return;
    }
}

bool FolderWalk::walkFolder(const std::string& folder, std::vector<std::string>& waiting,
                            const Visit& visit) {
    std::vector<platform::FolderEntry> entries;
    try {
        entries = files_.list(folder);
    } catch (const base::FileFailure& failure) {
        passedOver_.unreadable.push_back({folder, std::string(failure.reason())});
        return true;
    }
    for (const platform::FolderEntry& entry : entries) {
        if (entry.name.front() == '.' && !complete_) {
            ++passedOver_.hiddenNames;
        } else if (entry.status.kind == platform::FileKind::Link) {
            ++passedOver_.links;
        } else if (entry.status.kind == platform::FileKind::Folder && isFolderWord(entry.status.attributes)) {
            waiting.push_back(folder + entry.name + paths_.separator);
        } else if (!visit(folder + entry.name, entry.status)) {
            return false;
        }
    }
    return true;
}

}  // namespace corvalence::files
