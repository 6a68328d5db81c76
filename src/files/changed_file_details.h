#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "crypto/digest_code.h"
#include "files/file_record.h"
#include "files/restore.h"

namespace corvalence::files {

/// What is to be done about a changed file; the values are those of the dialog's radio group.
enum class Reaction { Ignore = 0, UpdateWithBackup = 1, UpdateKeepBackup = 2, Restore = 3 };

struct ReactionRow {
    Reaction reaction;
    std::string_view button;       // of the dialog
    std::string_view consoleName;  // of --on-change
};

inline constexpr std::array<ReactionRow, 4> kReactions = {{
    {Reaction::Ignore, "Ignore and continue to check to rest of the database.", "ignore"},
    {Reaction::UpdateWithBackup, "Update database with new details. Make this file the new backup.",
     "update"},
    {Reaction::UpdateKeepBackup, "Update database with new details. Leave the backup unchanged.",
     "update-keep-backup"},
    {Reaction::Restore, "Restore the original file from backup.", "restore"},
}};

/// What the dialog "Changed file details." shows of a changed file.
struct ChangedFileDetails {
    FileRecord then;
    FileRecord now;             // as the record would be if the file were added now
    std::uint64_t sizeNow = 0;  // all bits; the records carry the low 32
    std::string type;
    std::string lastChecked;       // "Database last checked:   …" or "Database unchecked until now."
    bool digestTruncated = false;  // a digest of 128 characters does not fit the dialog
    bool onlyIgnore = false;       // the system's own Database Index: nothing may be done about it here
};

/// One line of the dialog: its two labels and values, and whether the second value is drawn red.
struct DetailLine {
    std::string labelThen;
    std::string then;
    std::string labelNow;
    std::string now;
    bool differs = false;
};

/// Size, digest, attributes, modification and creation time, in the dialog's order. Texts are compared, not
/// numbers.
std::array<DetailLine, 5> detailLines(const ChangedFileDetails& details, platform::Clock& clock);

}  // namespace corvalence::files
