#include "files/backup_room.h"

namespace corvalence::files {

BackupDrive backupDrive(const store::Vault& vault) {
    const std::string folder = vault.configuration.folder(settings::key::kBackupFilesDirectory);
    const auto disk = vault.platform.status.disk(folder);
    return {disk ? disk->available : UINT64_MAX,
            vault.platform.volumes.isFat(vault.platform.volumes.rootOf(folder))};
}

BackupRoom backupRoom(const store::Vault& vault, std::uint64_t bytes) {
    const BackupDrive drive = backupDrive(vault);
    return backupRoom(bytes, drive.free, drive.isFat);
}

std::string_view refusalText(BackupRoom room) noexcept {
    switch (room) {
        case BackupRoom::Enough:
            break;
        case BackupRoom::DiskTooSmall:
            return "You do not have enough free disk space to add the files.\n\nIf you want to add the files "
                   "to "
                   "the database without backing up the files,\n\nchange your configuration from the "
                   "Configuration menu.";
        case BackupRoom::FileTooLarge:
            return "Your file system does not support files larger than 4GB.\n\nTry creating databases "
                   "smaller "
                   "than 4GB or change your backup configuration from the Configuration menu.";
    }
    return {};
}

}  // namespace corvalence::files
