#pragma once

#include <optional>
#include <string>

#include "files/criteria.h"

namespace corvalence::cli {

/// The criteria of a command line as they were typed.
struct CriteriaTexts {
    std::optional<std::string> size;
    std::optional<std::string> created;
    std::optional<std::string> modified;
    std::optional<std::string> type;
    std::optional<std::string> attributes;
    std::optional<std::string> contents;
    bool matchCase = false;
    bool wholeWord = false;
    bool textOnly = false;
    std::optional<std::string> abilities;

    bool any() const noexcept {
        return size || created || modified || type || attributes || contents || abilities || matchCase ||
               wholeWord || textOnly;
    }
};

/// Throws CommandEnd (Usage) that says which text is wrong and what it may be.
files::Criteria parseCriteria(const CriteriaTexts& texts);

}  // namespace corvalence::cli
