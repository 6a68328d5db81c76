#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/file_time.h"
#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::files {

/// What "Database Details." tells of a database that lists files.
struct DatabaseDetails {
    std::string path;
    base::FileTime created;
    std::optional<base::FileTime> lastCheck;
    base::FileTime modified;
    std::uint64_t listed = 0;
    std::uint64_t bytes = 0;  // of all listed files, as recorded
    std::string_view digestName;
};

/// Counts the records of the open database. Throws base::FileFailure, DatabaseChanged.
DatabaseDetails readDetails(store::Vault& vault, const store::OpenDatabaseContext& database);

/// A label, with a closing colon, and its value.
struct DetailsLine {
    std::string_view label;
    std::string value;
};

/// All but the path, in the order in which they are shown; those up to the third are of every kind of
/// database.
std::array<DetailsLine, 6> detailsLines(const DatabaseDetails& details, platform::Clock& clock);

/// "Unchecked" where there was no check.
std::string lastCheckText(const std::optional<base::FileTime>& lastCheck, platform::Clock& clock);

}  // namespace corvalence::files
