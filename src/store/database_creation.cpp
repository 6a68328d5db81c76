#include "store/database_creation.h"

#include <algorithm>

#include "base/hex_text.h"
#include "base/number_text.h"
#include "base/record_text.h"
#include "crypto/md5.h"
#include "store/backup_database.h"
#include "store/backup_pair.h"
#include "store/database_index.h"

namespace corvalence::store {

namespace {

// Location plus name have to stay below this, in bytes.
constexpr std::size_t kPathTotal = 260;
constexpr std::string_view kForbiddenInName = "\\/:*?\"<>|";

bool hasForbidden(const std::string& name) {
    return name.find_first_of(kForbiddenInName) != std::string::npos || !base::isRecordPath(name);
}

}  // namespace

std::string completeLocation(const std::string& location, const base::PathRules& paths) {
    std::string complete = location;
    if (paths.separator == '\\') {
        if (complete.size() == 1) {
            complete += ":";
        } else if (complete.size() == 2 && paths.isSeparator(complete[1])) {
            complete[1] = ':';
        }
    }
    complete = paths.withSeparator(complete);
    if (paths.separator == '\\' && complete.front() >= 'a' && complete.front() <= 'z') {
        complete.front() = static_cast<char>(complete.front() - 'a' + 'A');
    }
    return complete;
}

std::optional<std::string> DatabaseCreation::acceptPath(const CreationRequest& request) {
    platform::Platform& system = vault_.platform;
    const auto refuse = [&](const std::string& text) {
        system.ui.message(platform::Icon::Stop, text);
        return std::nullopt;
    };
    const std::string location = completeLocation(request.location, system.paths);
    const auto folder = system.files.status(location, platform::Follow::Yes);
    if (request.location.empty() || !folder || folder->kind != platform::FileKind::Folder) {
        return refuse(location + "  is not a valid location.");
    }
    if (!request.name.empty() && hasForbidden(request.name) && request.name.size() < kPathTotal) {
        return refuse("The name of the database should not contain \\ / : * ? \" < > |");
    }
    if (request.name.empty() || location.size() + request.name.size() >= kPathTotal) {
        return refuse(
            "The name of the database plus the location for the database must total less than 260 "
            "characters.");
    }
    const std::string path = location + request.name;
    const std::string backup = backupDatabasePath(path, vault_.configuration, system.paths);
    // A folder may hold a separator as well as a name may; one such line would make the whole index
    // unreadable.
    if (!base::isRecordPath(path) || !base::isRecordPath(backup)) {
        return refuse(location + "  is not a valid location.");
    }
    if (system.files.status(path, platform::Follow::No))
        return refuse("The file " + path + " already exists.");
    const DatabaseIndex index(vault_);
    const auto records = index.records();
    if (index.findRecord(path) || findClaimant(vault_, records, path, path))
        return refuse(path + "  is the name of an existing database.");
    if (findClaimant(vault_, records, path, backup))
        return refuse(backup + "  is the name of an existing database.");
    if (system.files.status(backup, platform::Follow::No)) {
        return refuse("The file " + backup + " already exists.");
    }
    return path;
}

std::int64_t DatabaseCreation::nextNumber(const std::vector<IndexRecord>& records) {
    std::int64_t highest = vault_.configuration.number(settings::key::kBackupCounter);
    for (const IndexRecord& record : records)
        highest = std::max(highest, record.number);
    highest = std::max(highest, highestBackupPair(vault_));
    const std::int64_t number = highest + 1;
    vault_.configuration.write(settings::key::kBackupCounter, std::to_string(number));
    return number;
}

std::optional<OpenDatabaseContext> DatabaseCreation::create(const CreationRequest& request,
                                                            CreationWorker* worker) {
    const auto path = acceptPath(request);
    if (!path) return std::nullopt;
    DatabaseIndex index(vault_);
    IndexRecord record;
    record.path = *path;
    record.kind = request.kind;
    record.digest = request.digest;
    record.created = vault_.platform.clock.now();
    record.fileDigest = base::hexText(crypto::Md5::of({}));
    const std::int64_t number = nextNumber(index.records());
    if (request.kind == DatabaseKind::Numbered) record.number = number;

    crypto::TemporaryFile database = vault_.working.createDatabase(*path);
    database.close();
    if (request.kind == DatabaseKind::Numbered) createBackupPair(vault_, record.number);
    index.appendRecord(record);
    try {
        writeBackupDatabase(vault_, *path);
    } catch (const base::FileFailure&) {
        database.abandon();  // it is listed; the next start makes up for its copy
        throw;
    }
    database.release();
    OpenDatabaseContext context{record};
    if (worker != nullptr && !worker->fill(context)) return std::nullopt;
    vault_.platform.ui.status(0, "Complete.");
    return context;
}

}  // namespace corvalence::store
