#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/path_rules.h"
#include "platform/auto_start.h"
#include "platform/platform.h"
#include "settings/configuration.h"
#include "settings/configuration_rules.h"

namespace corvalence::shell {

inline constexpr std::string_view kSheetTitle = "Configuration.";

// The six pages of the sheet, in their order: their fields, and which of them can be used as the others
// stand.

/// "Backup."
struct BackupPage {
    bool backsUpDatabases = true;
    std::string suffix;
    bool besideDatabase = true;
    std::string folder;
    bool backsUpFiles = true;
    bool encrypts = true;

    bool canSetSuffix() const { return backsUpDatabases; }
    bool canSetBesideDatabase() const { return backsUpDatabases; }
    /// The folder's field and its "Browse".
    bool canSetFolder() const { return backsUpDatabases && !besideDatabase; }
    bool canSetEncrypts() const { return backsUpFiles; }

    /// Whether what the folder picker gave is taken: a path of a drive, or from the root on Linux.
    static bool takesFolder(std::string_view chosen, const base::PathRules& paths);
};

/// What is played at a difference, by number.
enum class WarningChoice { Calm, Warning, Alarm, Silent, File };

/// "Audio."
struct AudioPage {
    bool isCountdownSilent = true;
    WarningChoice warning = WarningChoice::Alarm;
    std::string soundFile;

    /// What the sound buttons play, at once: the bleep of the countdown, or a warning by its number. Silent
    /// plays nothing.
    static void playBleep(platform::Sound& sound);
    void play(platform::Sound& sound, WarningChoice choice) const;
};

/// "Background Checking."
struct BackgroundPage {
    bool startsWithSession = false;
    bool showsProgress = true;
    bool isAnimated = true;
};

/// "Page Size."
struct PageSizePage {
    int rows = 10000;
};

/// "Interface."
struct InterfacePage {
    int recentCount = 10;
    bool keepsRecent = true;
    int infoBarSeconds = 5;
    bool themedProgress = false;
    bool folderIcon = true;
    // How far walks over the machine go: whether they pass over nothing, and the folders that they keep to,
    // one a line.
    bool completeWalk = false;
    std::string walkRoots;

    bool canSetRecentCount() const { return keepsRecent; }
};

/// "Email."
struct EmailPage {
    bool isEnabled = false;
    bool onlyChanges = false;
    bool encrypted = true;
    std::string recipient;
    int timeoutMinutes = 1;
    // How mail goes out where no mail program of the desktop sends it.
    std::string server;
    bool requiresTls = true;
    std::string sender;
    std::string loginFile;
    std::string authoritiesFile;

    /// All fields but the switch itself.
    bool canSetFields() const { return isEnabled; }
};

struct SheetPages {
    BackupPage backup;
    AudioPage audio;
    BackgroundPage background;
    PageSizePage pageSize;
    InterfacePage look;
    EmailPage email;
};

/// What a number's field takes, by its key.
struct EntryRange {
    int lowest;
    int highest;
};
EntryRange entryRange(std::string_view key);

class SheetDialog {
  public:
    virtual ~SheetDialog() = default;
    /// Shows the sheet with these fields and lets the user change them. False where the user cancels.
    virtual bool show(SheetPages& pages) = 0;
};

/// "Configuration.": lets the user change the settings, and stores them.
class ConfigurationSheet {
  public:
    /// `program`: full path of the graphical program, which the auto-start entry names.
    ConfigurationSheet(platform::Platform& platform, settings::Configuration& configuration,
                       platform::AutoStart& autoStart, std::string program)
        : platform_(platform),
          configuration_(configuration),
          autoStart_(autoStart),
          program_(std::move(program)) {}

    /// The fields as the settings have them; texts that do not parse or lie out of range give the fall-backs.
    SheetPages load() const;

    /// Shows the sheet, again with what was entered as long as a rule is broken and the user goes on, then
    /// stores the fields in a fixed order (a key whose text stays is not written), renews the auto-start
    /// entry and cuts the list of recent databases. Cancel stores the fields that load() gave: keys that hold
    /// anything out of range get their fall-backs. Where those break a rule, the user is told and sees the
    /// sheet once more.
    ///
    /// Gives the fields that hold from now on. Where a key could not be written, "Registry error." was shown
    /// and the others were written all the same.
    SheetPages run(SheetDialog& dialog);

  private:
    std::optional<std::string> findFault(const SheetPages& pages, const SheetPages& before) const;
    std::optional<std::string> findEntryFault(const settings::ConfigurationKey& key,
                                              const std::string& text) const;
    void store(const SheetPages& pages);

    platform::Platform& platform_;
    settings::Configuration& configuration_;
    platform::AutoStart& autoStart_;
    std::string program_;
};

}  // namespace corvalence::shell
