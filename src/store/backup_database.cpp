#include "store/backup_database.h"

#include <algorithm>
#include <array>

#include "base/hex_text.h"
#include "base/record_text.h"
#include "crypto/sealed_file.h"
#include "crypto/secure_zero.h"
#include "platform/file_copy.h"
#include "store/database_digest.h"
#include "store/database_index.h"

namespace corvalence::store {

namespace {

/// Whether unsealed bytes hold a field of a record: a run of hexadecimal digits that ends or begins at a
/// separator. Records hold digests or times; what is unsealed under the wrong key, or never was sealed, has
/// no such run. A changed byte or two in a sealed file leave others.
bool holdsField(std::string_view text) noexcept {
    constexpr std::size_t kRun = 8;
    std::size_t run = 0;
    bool afterSeparator = false;
    for (const char c : text) {
        if (base::isHexText(std::string_view(&c, 1))) {
            if (++run >= kRun && afterSeparator) return true;
        } else {
            if (c == base::kSeparator && run >= kRun) return true;
            run = 0;
            afterSeparator = c == base::kSeparator;
        }
    }
    return false;
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

bool holdsDataOf(const Vault& vault, const IndexRecord& record, const std::string& path) {
    constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;
    platform::FileSystem& files = vault.platform.files;
    const auto status = files.status(path, platform::Follow::No);
    if (!status || status->kind != platform::FileKind::Regular) return false;
    if (status->size == 0) return true;
    if (status->size % kBlock != 0) return false;
    std::array<std::uint8_t, 40 * kBlock> plain{};  // a whole record, whatever its length
    static_assert(sizeof(plain) >= base::kLineLimit);
    const std::uint64_t length = std::min<std::uint64_t>(status->size, plain.size());
    const auto file = files.openShared(path);
    crypto::UnsealReader reader(*file, length, vault.session.key, crypto::PathIV(record.path),
                                crypto::EndRule::exactLength(length));
    const std::string_view text = base::textOf(base::ByteView(plain).first(reader.read(plain)));
    const bool holds = holdsField(text);
    crypto::secureZero(plain.data(), plain.size());
    return holds || digestFile(files, path) == record.fileDigest;
}

void writeBackupDatabase(Vault& vault, const std::string& database) {
    if (!vault.configuration.isOn(settings::key::kBackupDatabases)) return;
    const std::string backup = backupDatabasePath(database, vault.configuration, vault.platform.paths);
    const auto records = DatabaseIndex(vault).records();
    if (const auto other = findClaimant(vault, records, database, backup)) {
        throw BackupPlaceTaken(backup, "that place belongs to the database " + *other +
                                           ". Choose another suffix or folder for backup databases.");
    }
    const auto own = std::find_if(records.begin(), records.end(),
                                  [&](const IndexRecord& record) { return record.path == database; });
    const bool isTaken = vault.platform.files.status(backup, platform::Follow::No).has_value();
    if (isTaken && (own == records.end() || !holdsDataOf(vault, *own, backup))) {
        throw BackupPlaceTaken(backup,
                               "a file stands there that is no backup of this database. Move it elsewhere.");
    }
    crypto::TemporaryFile copy = vault.working.createSealed(backup, crypto::kSealedBesideSuffix);
    const auto source = vault.platform.files.openShared(database);
    platform::copyBytes(*source, copy.file(), source->size());
    copy.keepAs(backup);
}

}  // namespace corvalence::store
