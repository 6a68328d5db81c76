#pragma once

#include <array>
#include <string_view>

#include "files/restore.h"

namespace corvalence::files {

struct RestoreChoiceRow {
    RestoreChoice choice;
    std::string_view button;
};

/// The ways to put a file back, as they are offered; the second is the default.
inline constexpr std::array<RestoreChoiceRow, 2> kRestoreChoices = {{
    {RestoreChoice::DeleteChangedFile, "Restore the original file and delete the changed file."},
    {RestoreChoice::MoveChangedFile,
     "Restore the original file and move the changed file to the 'Changed Files' folder."},
}};

}  // namespace corvalence::files
