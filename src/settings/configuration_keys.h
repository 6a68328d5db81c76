#pragma once

#include <span>
#include <string_view>

namespace corvalence::settings {

/// What a key's text has to be.
enum class Form {
    Number,     // decimal, within a range
    Character,  // one printable character
    Letter,     // one of two letters
    Text,       // anything that is no line break
    Path,       // a folder or file, or empty
    Paths,      // folders, one a line, or empty
};

/// One row of the table of configuration keys. Every key lies under "Software\Corvalence\".
struct ConfigurationKey {
    std::string_view name;         // "Config5", "Backup\Backup Files Directory"
    std::string_view consoleName;  // "backup-files"
    Form form;
    int lowest;         // accepted on reading
    int highest;        // accepted on reading
    int lowestOnEntry;  // what a user may set
    int highestOnEntry;
    std::string_view
        fallback;  // used where the text does not parse or lies outside the range; what init writes
    std::string_view letters;  // of a Letter, the one that means "yes" first
    std::string_view meaning;
};

/// All keys, in the order in which a listing shows them.
std::span<const ConfigurationKey> configurationKeys() noexcept;

/// By name or console name, letters of either case; null where there is none.
const ConfigurationKey* findConfigurationKey(std::string_view name) noexcept;

/// "Software\Corvalence\" + name.
inline constexpr std::string_view kKeyRoot = "Software\\Corvalence\\";

namespace key {
inline constexpr std::string_view kBackupSuffix = "Config1";
inline constexpr std::string_view kBackupDatabases = "Config2";
inline constexpr std::string_view kBackupDatabaseFolder = "Config3";
inline constexpr std::string_view kBackupSameAsDatabase = "Config4";
inline constexpr std::string_view kBackupFiles = "Config5";
inline constexpr std::string_view kRecentCount = "Config6";
inline constexpr std::string_view kRecentList = "Config7";
inline constexpr std::string_view kScheduleHours = "Config8";
inline constexpr std::string_view kScheduleMinutes = "Config9";
inline constexpr std::string_view kScheduleSeconds = "Config10";
inline constexpr std::string_view kScheduleReaction = "Config11";
inline constexpr std::string_view kCountdownSound = "Config12";
inline constexpr std::string_view kWarningSound = "Config13";
inline constexpr std::string_view kWarningSoundFile = "Config14";
inline constexpr std::string_view kInfoBarSeconds = "Config16";
inline constexpr std::string_view kEncryptBackups = "Config17";
inline constexpr std::string_view kTrayProgress = "Config20";
inline constexpr std::string_view kThemedProgress = "Config21";
inline constexpr std::string_view kTrayAnimation = "Config22";
inline constexpr std::string_view kEmailEnabled = "Config23";
inline constexpr std::string_view kEmailOnlyChanges = "Config24";
inline constexpr std::string_view kEmailEncrypted = "Config25";
inline constexpr std::string_view kEmailRecipient = "Config26";
inline constexpr std::string_view kEmailTimeout = "Config27";
inline constexpr std::string_view kMailServer = "Mail Server";
inline constexpr std::string_view kMailTls = "Mail TLS";
inline constexpr std::string_view kMailSender = "Mail Sender";
inline constexpr std::string_view kMailLogin = "Mail Login";
inline constexpr std::string_view kMailAuthorities = "Mail Authorities";
inline constexpr std::string_view kAutoRestore = "Config28";
inline constexpr std::string_view kAutoRestoreMoves = "Config29";
inline constexpr std::string_view kFolderIcon = "Config32";
inline constexpr std::string_view kBackgroundChecking = "Background Checking";
inline constexpr std::string_view kCompleteWalk = "Complete Walk";
inline constexpr std::string_view kPageSize = "Config15";
inline constexpr std::string_view kWalkRoots = "Walk Roots";
inline constexpr std::string_view kInstallDirectory = "Install Directory";
inline constexpr std::string_view kBackupFilesDirectory = "Backup\\Backup Files Directory";
inline constexpr std::string_view kBackupCounter = "Backup\\Backup Database Index";
inline constexpr std::string_view kChangedFilesDirectory = "Changed Files Directory";
inline constexpr std::string_view kScheduleDirectory = "Checking Schedule Directory";
}  // namespace key

}  // namespace corvalence::settings
