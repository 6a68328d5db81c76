#include "shell/configuration_sheet.h"

#include <cassert>
#include <sstream>
#include <utility>
#include <vector>

#include "files/warning_sound.h"
#include "settings/configuration_change.h"
#include "store/recent_list.h"

namespace corvalence::shell {

namespace {

namespace key = settings::key;

using Texts = std::vector<std::pair<std::string_view, std::string>>;

std::string flag(bool isOn) {
    return isOn ? "1" : "0";
}

/// Every key of the sheet, in the order of writing.
Texts textsOf(const SheetPages& pages) {
    const auto& [backup, audio, background, pageSize, look, email] = pages;
    return {
        {key::kThemedProgress, flag(look.themedProgress)},
        {key::kFolderIcon, flag(look.folderIcon)},
        {key::kTrayAnimation, flag(background.isAnimated)},
        {key::kEncryptBackups, backup.encrypts ? "N" : "P"},
        {key::kBackgroundChecking, background.startsWithSession ? "Y" : "N"},
        {key::kEmailEnabled, flag(email.isEnabled)},
        {key::kEmailOnlyChanges, flag(email.onlyChanges)},
        {key::kEmailEncrypted, flag(email.encrypted)},
        {key::kEmailTimeout, std::to_string(email.timeoutMinutes)},
        {key::kEmailRecipient, email.recipient},
        {key::kMailServer, email.server},
        {key::kMailTls, flag(email.requiresTls)},
        {key::kMailSender, email.sender},
        {key::kMailLogin, email.loginFile},
        {key::kMailAuthorities, email.authoritiesFile},
        {key::kWarningSoundFile, audio.soundFile},
        {key::kCountdownSound, flag(audio.isCountdownSilent)},
        {key::kPageSize, std::to_string(pageSize.rows)},
        {key::kInfoBarSeconds, std::to_string(look.infoBarSeconds)},
        {key::kBackupSuffix, backup.suffix},
        {key::kBackupFiles, flag(backup.backsUpFiles)},
        {key::kWarningSound, std::to_string(static_cast<int>(audio.warning))},
        {key::kTrayProgress, flag(background.showsProgress)},
        {key::kBackupDatabases, flag(backup.backsUpDatabases)},
        {key::kBackupDatabaseFolder, backup.folder},
        {key::kBackupSameAsDatabase, flag(backup.besideDatabase)},
        {key::kRecentCount, std::to_string(look.recentCount)},
        {key::kRecentList, flag(look.keepsRecent)},
        {key::kCompleteWalk, flag(look.completeWalk)},
        {key::kWalkRoots, look.walkRoots},
    };
}

/// Whether a path means the same wherever the program was started.
bool isAbsolute(const std::string& path, const base::PathRules& paths) {
    if (paths.separator == '/') return path.starts_with('/');
    return !path.empty() && paths.absolute(path, "A:\\a") == paths.absolute(path, "B:\\b");
}

/// A folder as it is stored: a drive's letter alone means its root, and a separator closes it.
std::string storedFolder(const std::string& entered, const base::PathRules& paths) {
    if (entered.empty()) return entered;
    const bool isDrive = entered.size() == 1 && paths.separator == '\\';
    return paths.withSeparator(isDrive ? entered + ":" : entered);
}

settings::SheetFields ruledFields(const SheetPages& pages) {
    return {pages.backup.backsUpDatabases, pages.backup.suffix,   pages.backup.besideDatabase,
            pages.backup.folder,           pages.email.isEnabled, pages.email.recipient};
}

const settings::ConfigurationKey& rowOf(std::string_view name) {
    const settings::ConfigurationKey* row = settings::findConfigurationKey(name);
    assert(row != nullptr);
    return *row;
}

}  // namespace

bool BackupPage::takesFolder(std::string_view chosen, const base::PathRules& paths) {
    if (chosen.empty()) return false;
    const char first = chosen.front();
    const bool isLetter = (first >= 'A' && first <= 'Z') || (first >= 'a' && first <= 'z');
    return paths.separator == '\\' ? isLetter : paths.isSeparator(first);
}

void AudioPage::playBleep(platform::Sound& sound) {
    sound.playResource("blp");
}

void AudioPage::play(platform::Sound& sound, WarningChoice choice) const {
    files::playWarning(sound, static_cast<int>(choice), soundFile);
}

EntryRange entryRange(std::string_view key) {
    const settings::ConfigurationKey& row = rowOf(key);
    return {row.lowestOnEntry, row.highestOnEntry};
}

SheetPages ConfigurationSheet::load() const {
    const settings::Configuration& from = configuration_;
    SheetPages pages;
    pages.backup = {from.isOn(key::kBackupDatabases),      from.text(key::kBackupSuffix),
                    from.isOn(key::kBackupSameAsDatabase), from.text(key::kBackupDatabaseFolder),
                    from.isOn(key::kBackupFiles),          from.encryptsBackups()};
    pages.audio = {from.isOn(key::kCountdownSound),
                   static_cast<WarningChoice>(from.number(key::kWarningSound)),
                   from.text(key::kWarningSoundFile)};
    pages.background = {from.text(key::kBackgroundChecking) == "Y", from.isOn(key::kTrayProgress),
                        from.isOn(key::kTrayAnimation)};
    pages.pageSize = {from.number(key::kPageSize)};
    pages.look = {from.number(key::kRecentCount),    from.isOn(key::kRecentList),
                  from.number(key::kInfoBarSeconds), from.isOn(key::kThemedProgress),
                  from.isOn(key::kFolderIcon),       from.isOn(key::kCompleteWalk),
                  from.text(key::kWalkRoots)};
    pages.email = {from.isOn(key::kEmailEnabled),   from.isOn(key::kEmailOnlyChanges),
                   from.isOn(key::kEmailEncrypted), from.text(key::kEmailRecipient),
                   from.number(key::kEmailTimeout), from.text(key::kMailServer),
                   from.isOn(key::kMailTls),        from.text(key::kMailSender),
                   from.text(key::kMailLogin),      from.text(key::kMailAuthorities)};
    return pages;
}

std::optional<std::string> ConfigurationSheet::findFault(const SheetPages& pages,
                                                         const SheetPages& before) const {
    const base::PathRules& paths = platform_.paths;
    // A folder below nowhere in particular is none; the rule about folders then says so.
    settings::SheetFields ruled = ruledFields(pages);
    if (auto fault = settings::findFault(ruled, platform_.files, platform_.volumes, paths)) return fault;
    if (pages.backup.canSetFolder() && !isAbsolute(pages.backup.folder, paths))
        return pages.backup.folder + " is not a valid location.";
    // What stands in the settings may have a form that no user can enter.
    const Texts entered = textsOf(pages);
    const Texts stood = textsOf(before);
    for (std::size_t at = 0; at < entered.size(); ++at) {
        if (entered[at].second == stood[at].second) continue;
        if (auto fault = findEntryFault(rowOf(entered[at].first), entered[at].second)) return fault;
    }
    return std::nullopt;
}

std::optional<std::string> ConfigurationSheet::findEntryFault(const settings::ConfigurationKey& key,
                                                              const std::string& text) const {
    if (key.form != settings::Form::Paths) return settings::findFault(key, text);
    std::istringstream folders(text);
    for (std::string folder; std::getline(folders, folder);)
        if (!isAbsolute(folder, platform_.paths)) return folder + " is not a valid location.";
    return settings::findChangeFault(platform_, key, text);
}

SheetPages ConfigurationSheet::run(SheetDialog& dialog) {
    const SheetPages before = load();
    SheetPages pages = before;
    bool wasCancelled = false;
    for (;;) {
        const bool isConfirmed = dialog.show(pages);
        if (!isConfirmed) pages = before;
        pages.backup.folder = storedFolder(pages.backup.folder, platform_.paths);
        const auto fault = findFault(pages, before);
        if (!fault) break;
        // A rule that was broken before must not hold anybody in the sheet for ever.
        if (!isConfirmed && wasCancelled) break;
        wasCancelled = !isConfirmed;
        platform_.ui.message(platform::Icon::Stop, *fault);
    }
    store(pages);
    return pages;
}

void ConfigurationSheet::store(const SheetPages& pages) {
    for (const auto& [name, text] : textsOf(pages)) {
        if (configuration_.stored(name) != text) configuration_.write(name, text);
        if (name != key::kBackgroundChecking) continue;
        const bool isRenewed =
            pages.background.startsWithSession ? autoStart_.enable(program_) : autoStart_.disable();
        if (!isRenewed)
            platform_.ui.message(platform::Icon::Stop,
                                 "Whether Corvalence starts with the session could not be changed.");
    }
    store::RecentList::cut(configuration_);
}

}  // namespace corvalence::shell
