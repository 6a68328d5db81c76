#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/path_rules.h"
#include "platform/file_system.h"

namespace corvalence::files {

/// Whether an attribute word is one of those that a walk takes for a folder.
bool isFolderWord(std::uint32_t attributes) noexcept;

/// What every walk makes of an entry that it meets.
class WalkRules {
  public:
    /// `complete`: names that begin with a full stop are walked as well ("." and ".." never are).
    WalkRules(platform::FileSystem& files, bool complete) : files_(files), complete_(complete) {}

    /// Folders that are not entered where a walk meets them on its way; sorted by the bytes of their paths,
    /// without a closing separator.
    void keepOutOf(std::vector<std::string> folders) { barriers_ = std::move(folders); }

    bool isComplete() const noexcept { return complete_; }
    bool isHidden(std::string_view name) const noexcept { return name.front() == '.' && !complete_; }
    static bool isFolder(const platform::FileStatus& status) noexcept {
        return status.kind == platform::FileKind::Folder && isFolderWord(status.attributes);
    }

    /// By a path without a closing separator.
    bool isBarrier(std::string_view folder) const;

    enum class Entry { Allowed, Barrier, PseudoFileSystem };
    /// Whether a folder (with a closing separator) on volume `volume`, below one on `volumeAbove`, is
    /// entered.
    Entry mayEnter(const std::string& folder, std::uint64_t volume, std::uint64_t volumeAbove) const;

  private:
    platform::FileSystem& files_;
    bool complete_;
    std::vector<std::string> barriers_;
};

}  // namespace corvalence::files
