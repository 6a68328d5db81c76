#pragma once

#include <optional>
#include <string>

#include "files/criteria.h"
#include "files/text_search.h"

namespace corvalence::files {

/// Tests the criteria that may need a file's content: Contents and Abilities.
///
/// Programs are told by their extension. On Windows the ability to communicate is told by the names of
/// libraries that a program imports, and core functionality by the system's folder; on Linux by the names of
/// functions and libraries, and by the folders of programs, libraries and kernel modules.
class ContentTest {
  public:
    enum class Result { Passes, Fails, Cancelled };

    ContentTest(const Criteria& criteria, const base::PathRules& paths);

    /// Opens the file only where a criterion needs it. Throws base::FileFailure where it cannot be read.
    Result test(const std::string& path, platform::FileSystem& files, platform::Progress& progress);

  private:
    Result testAbilities(const std::string& path, platform::FileSystem& files, platform::Progress& progress);
    bool isProgram(const std::string& path) const;
    bool isOfTheSystem(const std::string& path) const;
    bool isCookieIndex(const std::string& path) const;

    std::optional<AbilitiesCriterion> abilities_;
    const base::PathRules& paths_;
    std::optional<TextSearch> contents_;
    std::optional<TextSearch> network_;
};

}  // namespace corvalence::files
