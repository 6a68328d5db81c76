#pragma once

#include <cstdint>
#include <string>

namespace corvalence::schedule {

/// What a check under way is about; picks what the tray says.
enum class WorkKind { Files = 0, DirectoryStructure = 1, Permissions = 2, Registry = 3, Services = 4 };

/// How the check of a scheduled database ended.
enum class WorkResult {
    Same,
    Differs,
    Incomplete,  // nothing differs, but not everything could be compared
    Missing,     // there is no such database
    Altered,     // its files are not those that the index expects
    Cancelled
};

/// Told how the check of one scheduled database goes.
class WorkListener {
  public:
    virtual ~WorkListener() = default;

    virtual void begins(const std::string& database, WorkKind kind) = 0;
    /// Once in a check.
    virtual void firstDifference() = 0;
    /// 0 to platform::Progress::kSteps.
    virtual void progress(std::uint32_t position) = 0;
    /// Renames that were committed could not be carried out: the next start does that. The program is to
    /// close, and no other check begins.
    virtual void needsRestart() = 0;
    virtual void ends(WorkResult result) = 0;
};

}  // namespace corvalence::schedule
