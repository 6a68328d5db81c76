#include "store/backup_database.h"

#include <algorithm>
#include <array>

#include "base/hex_text.h"
#include "base/record_text.h"
#include "base/utf8.h"
#include "crypto/sealed_file.h"
#include "crypto/secure_zero.h"
#include "platform/file_copy.h"
#include "store/database_digest.h"
#include "store/database_files.h"
#include "store/database_index.h"

namespace corvalence::store {

namespace {

constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;
// A whole record, whatever its length.
constexpr std::uint64_t kProbe = 40 * kBlock;
static_assert(kProbe >= base::kLineLimit);

crypto::SecretText unsealPiece(const Vault& vault, platform::File& file, std::uint64_t at,
                               std::uint64_t length, const crypto::ChainValue& chain) {
    std::array<std::uint8_t, kProbe> plain{};
    file.seek(at);
    crypto::UnsealReader reader(file, length, vault.session.key, chain, crypto::EndRule::exactLength(length));
    crypto::SecretText text(base::textOf(base::ByteView(plain).first(reader.read(plain))));
    crypto::secureZero(plain.data(), plain.size());
    return text;
}

/// Whether unsealed bytes are text lines. What is unsealed under the wrong key has one control character in
/// nine bytes; a path may have some, but hardly one in thirty-two. A few bytes may have none by chance, but
/// they are hardly UTF-8 then.
bool isText(std::string_view text) noexcept {
    constexpr std::size_t kFewBytes = 8 * kBlock;
    if (text.size() <= kFewBytes && !base::isUtf8(text.substr(0, text.rfind('\n')))) return false;
    const auto odd = std::count_if(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) < 32 && c != '\r' && c != '\n' && c != '\t';
    });
    return static_cast<std::size_t>(odd) * 32 <= text.size();
}

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

struct OwnedFile {
    std::string database;
    SealedFileRecord file;
};

std::optional<OwnedFile> ownerOf(Vault& vault, const std::vector<IndexRecord>& records,
                                 const std::string& path) {
    for (const auto& files : databaseFiles(vault, records)) {
        for (const SealedFileRecord& file : files) {
            if (file.path == path) return OwnedFile{files.front().path, file};
        }
    }
    return std::nullopt;
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

std::optional<std::string> findClaimant(Vault& vault, const std::vector<IndexRecord>& records,
                                        const std::string& database, const std::string& path) {
    const base::PathRules& paths = vault.platform.paths;
    const auto claims = [&](const SealedFileRecord& file) {
        return paths.equal(file.path, path) ||
               paths.equal(backupDatabasePath(file.path, vault.configuration, paths), path);
    };
    for (const auto& files : databaseFiles(vault, records)) {
        if (paths.equal(files.front().path, database)) continue;
        if (std::any_of(files.begin(), files.end(), claims)) return files.front().path;
    }
    return std::nullopt;
}

bool holdsDataOf(const Vault& vault, const SealedFileRecord& record, const std::string& path,
                 platform::Follow follow) {
    platform::FileSystem& files = vault.platform.files;
    const auto status = files.status(path, follow);
    if (!status || status->kind != platform::FileKind::Regular) return false;
    if (status->size == 0) return true;
    if (status->size % kBlock != 0) return false;
    const auto file = files.openShared(path);
    const crypto::SecretText begin =
        unsealPiece(vault, *file, 0, std::min(status->size, kProbe), crypto::PathIV(record.path));
    return holdsField(begin.view()) || digestFile(files, path) == record.digest;
}

bool readsAsText(const Vault& vault, const std::string& path, const crypto::ChainValue& chain) {
    const auto status = vault.platform.files.status(path, platform::Follow::Yes);
    if (!status || status->kind != platform::FileKind::Regular || status->size == 0 ||
        status->size % kBlock != 0)
        return false;
    const auto file = vault.platform.files.openShared(path);
    const std::uint64_t last = status->size - kBlock;
    crypto::ChainValue lastChain = chain;
    if (last > 0) {
        file->seek(last - kBlock);
        file->read(lastChain);
    }
    // Behind the end of the text, the last block holds whatever stood in memory when it was sealed.
    const std::size_t end = unsealPiece(vault, *file, last, kBlock, lastChain).view().find('\n');
    if (end == std::string_view::npos) return false;
    const std::uint64_t probed = std::min(status->size, kProbe);
    const crypto::SecretText begin = unsealPiece(vault, *file, 0, probed, chain);
    return isText(begin.view().substr(0, static_cast<std::size_t>(std::min(probed, last + end + 1))));
}

std::vector<std::string> findEarlierBackups(
    const Vault& vault, const SealedFileRecord& record,
    const std::function<const std::vector<platform::FolderEntry>&(const std::string& folder)>& listing) {
    const base::PathRules& paths = vault.platform.paths;
    const std::string present = backupDatabasePath(record.path, vault.configuration, paths);
    const std::string_view name = paths.fileName(record.path);
    const std::size_t suffixAt = std::min(name.rfind('.'), name.size());
    std::vector<std::string> found;
    for (const std::string_view folder : {paths.folder(record.path), paths.folder(present)}) {
        for (const platform::FolderEntry& entry : listing(std::string(folder))) {
            if (entry.name.size() != name.size() + 1) continue;
            std::string bare = entry.name;
            bare.erase(suffixAt, 1);
            const std::string path = std::string(folder) + entry.name;
            if (!paths.equal(bare, name) || paths.equal(path, present) ||
                std::find(found.begin(), found.end(), path) != found.end())
                continue;
            if (entry.status.size > 0 && holdsDataOf(vault, record, path)) found.push_back(path);
        }
    }
    return found;
}

void writeBackupDatabase(Vault& vault, const std::string& file) {
    if (!vault.configuration.isOn(settings::key::kBackupDatabases)) return;
    const std::string backup = backupDatabasePath(file, vault.configuration, vault.platform.paths);
    const auto records = DatabaseIndex(vault).records();
    const auto own = ownerOf(vault, records, file);
    if (const auto other = findClaimant(vault, records, own ? own->database : file, backup)) {
        throw BackupPlaceTaken(backup, "that place belongs to the database " + *other +
                                           ". Choose another suffix or folder for backup databases.");
    }
    const bool isTaken = vault.platform.files.status(backup, platform::Follow::No).has_value();
    if (isTaken && (!own || !holdsDataOf(vault, own->file, backup))) {
        throw BackupPlaceTaken(backup,
                               "a file stands there that is no backup of this database. Move it elsewhere.");
    }
    crypto::TemporaryFile copy = vault.working.createSealed(backup, crypto::kSealedBesideSuffix);
    const auto source = vault.platform.files.openShared(file);
    platform::copyBytes(*source, copy.file(), source->size());
    copy.keepAs(backup);
}

}  // namespace corvalence::store
