#pragma once

#include <cstdint>
#include <string_view>

#include "store/vault.h"

namespace corvalence::files {

/// Whether backups of files can be made, by what there is room for.
enum class BackupRoom { Enough, DiskTooSmall, FileTooLarge };

/// The largest sum of sizes, in bytes, that goes on a file system with 32-bit file sizes.
inline constexpr std::uint64_t kFatLimit = 4'096'000'000;

/// `bytes`: sizes of the files in all. `free`: bytes that are left on the drive of the Backup Files
/// Directory. `isFat`: it limits files to 32-bit sizes.
constexpr BackupRoom backupRoom(std::uint64_t bytes, std::uint64_t free, bool isFat) noexcept {
    if (bytes > free) return BackupRoom::DiskTooSmall;
    return isFat && bytes > kFatLimit ? BackupRoom::FileTooLarge : BackupRoom::Enough;
}

/// The drive of the Backup Files Directory as it is now.
struct BackupDrive {
    std::uint64_t free;  // in bytes; the highest number where the drive does not tell
    bool isFat;
};
BackupDrive backupDrive(const store::Vault& vault);

/// The same for the drive as it is now. A drive that does not tell what is left counts as large enough.
BackupRoom backupRoom(const store::Vault& vault, std::uint64_t bytes);

/// Why nothing is added, as the message for the user; empty for Enough.
std::string_view refusalText(BackupRoom room) noexcept;

}  // namespace corvalence::files
