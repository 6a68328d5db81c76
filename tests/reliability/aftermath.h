#pragma once

#include <map>
#include <optional>
#include <string>

#include "scenarios.h"

namespace corvalence::test {

/// A prepared world that is put back to where it was as often as a campaign likes.
class Stage {
  public:
    explicit Stage(const Scenario& scenario);

    /// Folder of the world, with a closing separator: always the same, as sealed files are bound to it.
    const std::string& folder() const noexcept { return folder_; }
    void reset() const;
    /// The user's files when the scenario began, by name.
    const std::map<std::string, std::string>& before() const noexcept { return before_; }

  private:
    TempFolder home_{quickFolder()};
    std::string folder_ = home_ / "world/";
    std::string kept_ = home_ / "kept/";
    std::map<std::string, std::string> before_;
};

/// Starts a run in a world in which something went wrong and expects that nothing is lost: the run starts and
/// clears away, every database opens (a damaged one from its backup database), every record reads, each of
/// the user's files is there, backups bring back what they hold, and all work goes on. The number of
/// databases that had to be recovered.
int expectNothingLost(World& world, const Stage& stage, const Scenario& scenario);

}  // namespace corvalence::test
