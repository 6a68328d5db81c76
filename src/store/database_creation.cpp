#include "store/database_creation.h"

#include <algorithm>

#include "base/hex_text.h"
#include "base/number_text.h"
#include "base/record_text.h"
#include "crypto/md5.h"
#include "store/backup_database.h"
#include "store/backup_pair.h"
#include "store/component_files.h"
#include "store/component_index.h"
#include "store/database_deletion.h"
#include "store/database_files.h"
#include "store/database_index.h"

namespace corvalence::store {

namespace {

// Location plus name have to stay below this, in bytes.
constexpr std::size_t kPathTotal = 260;
constexpr std::string_view kTooLong =
    "The name of the database plus the location for the database must total less than 260 characters.";
constexpr std::string_view kForbiddenInName = "\\/:*?\"<>|";

}  // namespace

bool hasForbidden(const std::string& name) {
    return name.find_first_of(kForbiddenInName) != std::string::npos || !base::isRecordPath(name);
}

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
        return refuse(std::string(kTooLong));
    }
    std::string path = location + request.name;
    const std::string backup = backupDatabasePath(path, vault_.configuration, system.paths);
    // A folder may hold a separator as well as a name may; one such line would make the whole index
    // unreadable.
    if (!base::isRecordPath(path) || !base::isRecordPath(backup)) {
        return refuse(location + "  is not a valid location.");
    }
    if (const auto fault = findTakenPlace(path, request.kind)) return refuse(*fault);
    return path;
}

std::optional<std::string> DatabaseCreation::findTakenPlace(const std::string& path, DatabaseKind kind) {
    const base::PathRules& paths = vault_.platform.paths;
    const auto exists = [&](const std::string& place) {
        return vault_.platform.files.status(place, platform::Follow::No).has_value();
    };
    if (exists(path)) return "The file " + path + " already exists.";
    const DatabaseIndex index(vault_);
    if (index.findRecord(path)) return path + "  is the name of an existing database.";
    std::vector<std::string> taken;
    for (const IndexRecord& record : index.records()) {
        const auto places = databasePlaces(vault_, record.kind, record.path);
        taken.insert(taken.end(), places.begin(), places.end());
    }
    for (const std::string& place : databasePlaces(vault_, kind, path)) {
        const auto isPlace = [&](const std::string& other) { return paths.equal(other, place); };
        if (std::any_of(taken.begin(), taken.end(), isPlace))
            return place + "  is the name of an existing database.";
        if (exists(place)) return "The file " + place + " already exists.";
        if (paths.fileName(place).size() > vault_.platform.files.nameLimit()) return std::string(kTooLong);
        // From here on the place is the database's own: a backup must not fall on another file of it.
        taken.push_back(place);
    }
    return std::nullopt;
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

IndexRecord DatabaseCreation::newRecord(const CreationRequest& request, const std::string& path) {
    IndexRecord record;
    record.path = path;
    record.kind = request.kind;
    record.digest = request.digest;
    record.created = vault_.platform.clock.now();
    if (request.kind == DatabaseKind::Numbered) record.fileDigest = base::hexText(crypto::Md5::of({}));
    // The number is taken for every kind, so that it also counts the databases.
    const std::int64_t number = nextNumber(DatabaseIndex(vault_).records());
    if (request.kind == DatabaseKind::Numbered) record.number = number;
    return record;
}

void DatabaseCreation::makeNumbered(const IndexRecord& record) {
    crypto::TemporaryFile database = vault_.working.createDatabase(record.path);
    database.close();
    createBackupPair(vault_, record.number);
    DatabaseIndex(vault_).appendRecord(record);
    try {
        writeBackupDatabase(vault_, record.path);
    } catch (const base::FileFailure&) {
        database.abandon();  // it is listed; the next start makes up for its copy
        throw;
    }
    database.release();
}

std::optional<OpenDatabaseContext> DatabaseCreation::create(const CreationRequest& request) {
    const auto path = acceptPath(request);
    if (!path) return std::nullopt;
    const IndexRecord record = newRecord(request, *path);
    makeNumbered(record);
    vault_.platform.ui.status(0, "Complete.");
    return OpenDatabaseContext{record};
}

std::unique_ptr<UnfinishedDatabase> DatabaseCreation::begin(const CreationRequest& request) {
    const auto path = acceptPath(request);
    if (!path) return nullptr;
    auto unfinished = std::make_unique<UnfinishedDatabase>(vault_, newRecord(request, *path));
    vault_.working.noteCreation(*path);
    makeNumbered(unfinished->context().record);
    return unfinished;
}

UnfinishedDatabase::~UnfinishedDatabase() {
    if (isWhole_) return;
    try {
        if (const auto record = DatabaseIndex(vault_).findExact(context_.path()))
            takeBackDatabase(vault_, *record);
        vault_.working.creationDone(context_.path());
    } catch (const base::FileFailure& failure) {
        vault_.platform.ui.message(platform::Icon::Warning,
                                   "The next start removes " + context_.path() + ". " + failure.what());
    }
}

void UnfinishedDatabase::complete(const std::vector<std::unique_ptr<NewFiles>>& components) {
    vault_.platform.ui.status(0, "Completing...");
    std::vector<SealedFileRecord> records;
    for (const auto& files : components) {
        files->finish();
        records.insert(records.end(), files->records().begin(), files->records().end());
    }
    ComponentIndex(vault_).put(records);
    for (const auto& files : components)
        files->backUpAndKeep();
    vault_.working.creationDone(context_.path());
    isWhole_ = true;
    vault_.platform.ui.status(0, "Complete.");
}

std::optional<OpenDatabaseContext> DatabaseCreation::create(const CreationRequest& request,
                                                            CreationWorker& worker) {
    const auto path = acceptPath(request);
    if (!path) return std::nullopt;
    IndexRecord record = newRecord(request, *path);
    NewFiles files(vault_, componentFiles(request.kind, Form::Standalone, *path));
    if (!worker.fill(*path, files)) return std::nullopt;
    vault_.platform.ui.status(0, "Completing...");
    files.finish();
    // The siblings first: as long as no record claims them, nobody looks at their lines.
    ComponentIndex(vault_).put({files.records().begin() + 1, files.records().end()});
    record.fileDigest = files.records().front().digest;
    DatabaseIndex(vault_).appendRecord(record);
    files.backUpAndKeep();
    vault_.platform.ui.status(0, "Complete.");
    return OpenDatabaseContext{record};
}

}  // namespace corvalence::store
