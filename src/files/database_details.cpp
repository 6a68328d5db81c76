#include "files/database_details.h"

#include "files/database_copy.h"
#include "files/file_record.h"
#include "files/file_texts.h"
#include "platform/time_text.h"

namespace corvalence::files {

DatabaseDetails readDetails(store::Vault& vault, const store::OpenDatabaseContext& database) {
    const store::IndexRecord& record = database.record;
    const crypto::DigestKind& digest = crypto::digestKind(record.digest);
    DatabaseDetails details{record.path, record.created, record.lastCheck, {}, 0, 0, digest.name};
    if (const auto status = vault.platform.files.status(record.path, platform::Follow::Yes))
        details.modified = status->written;
    DatabaseCopy copy(vault, database);
    RecordReader records = copy.records();
    for (std::string_view line; records.next(line); ++details.listed) {
        if (const auto file = FileRecord::parse(line, digest.width)) details.bytes += file->size;
    }
    copy.discard();
    return details;
}

std::array<DetailsLine, 6> detailsLines(const DatabaseDetails& details, platform::Clock& clock) {
    return {{
        {"Created:", platform::formatFileTime(clock, details.created)},
        {"Last checked:", lastCheckText(details.lastCheck, clock)},
        {"Modified: ", platform::formatFileTime(clock, details.modified)},
        {"Number of files listed: ", std::to_string(details.listed)},
        {"Total size of files listed:", formatSizeText(details.bytes)},
        {"Digest value:", std::string(details.digestName)},
    }};
}

std::string lastCheckText(const std::optional<base::FileTime>& lastCheck, platform::Clock& clock) {
    return lastCheck ? platform::formatFileTime(clock, *lastCheck) : "Unchecked";
}

}  // namespace corvalence::files
