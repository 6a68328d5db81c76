#include "store/backup_database.h"

#include <algorithm>
#include <array>

#include "base/record_text.h"
#include "crypto/sealed_file.h"
#include "crypto/secure_zero.h"
#include "platform/file_copy.h"
#include "store/database_index.h"

namespace corvalence::store {

namespace {

/// Whether unsealed bytes are the beginning of a database's text. Under a wrong key every eighth byte would
/// be a control character.
bool looksLikeRecords(base::ByteView plain) {
    constexpr std::ptrdiff_t kOneControlIn = 32;
    const auto isControl = [](std::uint8_t byte) {
        return byte < 0x20 && byte != '\r' && byte != '\n' && byte != '\t' && byte != 0;
    };
    const auto controls = std::count_if(plain.begin(), plain.end(), isControl);
    const auto separators = std::count(plain.begin(), plain.end(), std::uint8_t{base::kSeparator});
    return separators > 0 && controls <= static_cast<std::ptrdiff_t>(plain.size()) / kOneControlIn;
}

}  // namespace

BackupPlaceTaken::BackupPlaceTaken(const std::string& backup, const std::string& reason)
    : base::FileFailure(base::Cause::AccessDenied, backup,
                        "The backup database " + backup + " was not written: " + reason) {}

std::string backupDatabasePath(const std::string& database, const settings::Configuration& configuration,
                               const base::PathRules& paths) {
    namespace key = settings::key;
    std::string name(paths.fileName(database));
    const std::size_t stop = name.rfind('.');
    name.insert(stop == std::string::npos ? name.size() : stop, configuration.text(key::kBackupSuffix));
    if (configuration.number(key::kBackupSameAsDatabase) != 0)
        return std::string(paths.folder(database)) + name;
    return paths.join(configuration.text(key::kBackupDatabaseFolder), name);
}

std::optional<std::string> findClaimant(const Vault& vault, const std::vector<IndexRecord>& records,
                                        const std::string& database, const std::string& path) {
    const base::PathRules& paths = vault.platform.paths;
    const auto found = std::find_if(records.begin(), records.end(), [&](const IndexRecord& record) {
        return !paths.equal(record.path, database) &&
               (paths.equal(record.path, path) ||
                paths.equal(backupDatabasePath(record.path, vault.configuration, paths), path));
    });
    return found == records.end() ? std::nullopt : std::optional(found->path);
}

bool holdsDataOf(const Vault& vault, const std::string& database, const std::string& path) {
    constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;
    platform::FileSystem& files = vault.platform.files;
    const auto status = files.status(path, platform::Follow::No);
    if (!status || status->kind != platform::FileKind::Regular) return false;
    if (status->size == 0) return true;
    if (status->size % kBlock != 0) return false;
    std::array<std::uint8_t, 32 * kBlock> plain{};
    const std::uint64_t length = std::min<std::uint64_t>(status->size, plain.size());
    const auto file = files.openShared(path);
    crypto::UnsealReader reader(*file, length, vault.session.key, crypto::PathIV(database),
                                crypto::EndRule::exactLength(length));
    const std::size_t count = reader.read(plain);
    const bool holds = looksLikeRecords(base::ByteView(plain).first(count));
    crypto::secureZero(plain.data(), plain.size());
    return holds;
}

void writeBackupDatabase(Vault& vault, const std::string& database) {
    if (!vault.configuration.isOn(settings::key::kBackupDatabases)) return;
    const std::string backup = backupDatabasePath(database, vault.configuration, vault.platform.paths);
    if (const auto other = findClaimant(vault, DatabaseIndex(vault).records(), database, backup)) {
        throw BackupPlaceTaken(backup, "that place belongs to the database " + *other +
                                           ". Choose another suffix or folder for backup databases.");
    }
    if (vault.platform.files.status(backup, platform::Follow::No) && !holdsDataOf(vault, database, backup)) {
        throw BackupPlaceTaken(backup,
                               "a file stands there that is no backup of this database. Move it elsewhere.");
    }
    crypto::TemporaryFile copy = vault.working.createSealed(backup, crypto::kSealedBesideSuffix);
    const auto source = vault.platform.files.openShared(database);
    platform::copyBytes(*source, copy.file(), source->size());
    copy.keepAs(backup);
}

}  // namespace corvalence::store
