#include "store/backup_database.h"

#include "crypto/sealed_file.h"
#include "platform/file_copy.h"

namespace corvalence::store {

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

void writeBackupDatabase(Vault& vault, const std::string& database) {
    if (!vault.configuration.isOn(settings::key::kBackupDatabases)) return;
    const std::string backup = backupDatabasePath(database, vault.configuration, vault.platform.paths);
    crypto::TemporaryFile copy = vault.working.createSealed(backup, crypto::kSealedBesideSuffix);
    const auto source = vault.platform.files.openShared(database);
    platform::copyBytes(*source, copy.file(), source->size());
    copy.keepAs(backup);
}

}  // namespace corvalence::store
