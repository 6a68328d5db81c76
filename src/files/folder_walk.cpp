#include "files/folder_walk.h"

namespace corvalence::files {

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
        if (rules_.isHidden(entry.name)) {
            ++passedOver_.hiddenNames;
        } else if (entry.fault) {
            noteUnreadable(folder.path + entry.name, *entry.fault);
        } else if (status.kind == platform::FileKind::Link) {
            ++passedOver_.links;
        } else if (WalkRules::isFolder(status)) {
            enterLater({folder.path + entry.name + paths_.separator, status.identity.volume}, folder.volume);
        } else if (!visit(folder.path + entry.name, status)) {
            return false;
        }
    }
    return true;
}

void FolderWalk::enterLater(Folder folder, std::uint64_t volumeAbove) {
    switch (rules_.mayEnter(folder.path, folder.volume, volumeAbove)) {
        case WalkRules::Entry::Allowed:
            waiting_.push_back(std::move(folder));
            break;
        case WalkRules::Entry::PseudoFileSystem:
            ++passedOver_.pseudoFileSystems;
            break;
        case WalkRules::Entry::Barrier:
            break;
    }
}

void FolderWalk::noteUnreadable(const std::string& path, base::Cause cause) {
    passedOver_.unreadable.push_back({path, std::string(base::reasonText(cause))});
}

}  // namespace corvalence::files
