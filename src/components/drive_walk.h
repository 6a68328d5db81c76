#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "components/own_names.h"
#include "components/walk_plan.h"
#include "files/folder_walk.h"
#include "store/vault.h"

namespace corvalence::components {

/// A path in a component list takes at most so many bytes, so that its line and its line in a report fit
/// their readers. A stream's path and name take so many together.
inline constexpr std::size_t kComponentPathLimit = 593;

/// Whether a component list can hold this path or stream.
bool isComponentPath(std::string_view path) noexcept;

/// Whether that is so and the path is absolute, on either system: a list may have been made on the other.
bool isAbsoluteComponentPath(std::string_view path) noexcept;

/// Gets what a walk meets, in the order of the walk. Each answers false to end the walk.
class WalkVisitor {
  public:
    virtual ~WalkVisitor() = default;
    virtual bool beginRoot(std::size_t root) = 0;
    virtual bool file(const std::string& path) = 0;
    /// A folder, with a closing separator, before what it holds.
    virtual bool folder(const std::string& path) = 0;
    virtual bool endRoot(std::size_t root) = 0;
};

/// Where the walk of a root ended although entries were left.
struct WalkEnd {
    std::string folder;  // whose listing was the last to run out
    std::uint64_t foldersLeftOut = 0;
    std::uint64_t filesLeftOut = 0;
};

/// What a walk went past.
struct WalkAccount {
    files::PassedOver passedOver;
    std::uint64_t refused = 0;          // names that no line can hold
    std::vector<std::string> examples;  // the first of them
    std::vector<WalkEnd> ended;

    void refuse(const std::string& path);
};

/// The walk over the machine that baselines and their checks repeat: root after root, depth first in listing
/// order, each file once at its place. Links are files. What the installation itself writes is left out.
///
/// Each listing that runs out while the walk climbs is counted, from one folder entered to the next; at ten
/// the walk of the root ends there, unless walks are complete.
class DriveWalk {
  public:
    static constexpr unsigned kClimbLimit = 10;

    DriveWalk(store::Vault& vault, const WalkPlan& plan, const OwnNames& own);

    /// False where the visitor ended the walk. What cannot be read is noted and the walk goes on.
    bool run(WalkVisitor& visitor);

    WalkAccount& account() noexcept { return account_; }

  private:
    struct Level {
        std::string path;  // with a closing separator
        std::uint64_t volume = 0;
        std::vector<platform::FolderEntry> entries;
        const OwnNames::Names* own = nullptr;
        std::size_t next = 0;
    };
    enum class Step { Next, Entered, Ended };

    bool walkRoot(const std::string& root, WalkVisitor& visitor);
    Step visitEntries(WalkVisitor& visitor);
    Step visitEntry(const platform::FolderEntry& entry, WalkVisitor& visitor);
    Step visitFolder(const platform::FolderEntry& entry, std::string path, WalkVisitor& visitor);
    /// A folder that the walk goes into; nothing where it is gone.
    std::optional<Level> listed(const std::string& path, const platform::FileIdentity& identity);
    void noteUnreadable(const std::string& path, base::Cause cause);
    bool isPassedOver(const Level& level, const platform::FolderEntry& entry) const;
    void noteEnd(const std::string& folder);

    platform::FileSystem& files_;
    platform::UserInterface& ui_;
    const base::PathRules& paths_;
    const WalkPlan& plan_;
    const OwnNames& own_;
    files::WalkRules rules_;
    std::vector<Level> stack_;
    WalkAccount account_;
};

}  // namespace corvalence::components
