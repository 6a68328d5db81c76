#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/path_rules.h"
#include "files/walk_rules.h"

namespace corvalence::files {

/// A folder that could not be listed, or an entry of which nothing but its name is known, and why.
struct UnreadableEntry {
    std::string path;
    std::string reason;
};

/// What a walk went past without handing it on. Never silent: the command that walked tells it at its end.
struct PassedOver {
    std::uint64_t hiddenNames = 0;  // names that begin with a full stop, with all that lies below them
    std::uint64_t links = 0;
    std::uint64_t pseudoFileSystems = 0;  // mounted below the folder that the walk began in
    std::vector<UnreadableEntry> unreadable;
};

/// Walks all files below a folder, depth first without recursion: the files of a folder in listing order,
/// then the sub-folder that was met last. Links are not followed, and file systems that store nothing not
/// entered, unless the walk begins in one.
class FolderWalk {
  public:
    /// `complete`: names that begin with a full stop are walked as well ("." and ".." never are).
    FolderWalk(platform::FileSystem& files, const base::PathRules& paths, bool complete)
        : files_(files), paths_(paths), rules_(files, complete) {}

    /// Folders that the walk does not enter where it meets them on its way, because it begins there as well
    /// or is not to come there; sorted by the bytes of their paths, without a closing separator.
    void keepOutOf(std::vector<std::string> folders) { rules_.keepOutOf(std::move(folders)); }

    /// Hands every entry that is neither folder nor link to `visit`, by its full path, until it says false.
    /// What cannot be read is noted and the walk goes on.
    using Visit = std::function<bool(const std::string& path, const platform::FileStatus& status)>;
    void run(const std::string& folder, const Visit& visit);

    const PassedOver& passedOver() const noexcept { return passedOver_; }

  private:
    struct Folder {
        std::string path;  // with a closing separator
        std::uint64_t volume;
    };

    bool walkFolder(const Folder& folder, const Visit& visit);
    void enterLater(Folder folder, std::uint64_t volumeAbove);
    void noteUnreadable(const std::string& path, base::Cause cause);

    platform::FileSystem& files_;
    const base::PathRules& paths_;
    WalkRules rules_;
    std::vector<Folder> waiting_;
    PassedOver passedOver_;
};

}  // namespace corvalence::files
