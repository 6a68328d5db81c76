#include "settings/configuration_change.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "settings/configuration_rules.h"

namespace corvalence::settings {

namespace {

// Folders that the program itself keeps its files in.
constexpr std::array kDataFolderKeys = {key::kInstallDirectory, key::kBackupFilesDirectory,
                                        key::kChangedFilesDirectory, key::kScheduleDirectory};

bool isDataFolder(const ConfigurationKey& key) {
    return std::find(kDataFolderKeys.begin(), kDataFolderKeys.end(), key.name) != kDataFolderKeys.end();
}

/// The settings as they would be with one key changed.
class ChangedSettings : public platform::SettingsStore {
  public:
    ChangedSettings(platform::SettingsStore& inner, std::string_view name, std::string text)
        : inner_(inner), keyPath_(std::string(kKeyRoot).append(name)), text_(std::move(text)) {}

    std::optional<std::string> read(const std::string& keyPath) override {
        return keyPath == keyPath_ ? std::optional(text_) : inner_.read(keyPath);
    }
    bool write(const std::string&, const std::string&) override { return false; }
    bool exists() override { return true; }

  private:
    platform::SettingsStore& inner_;
    std::string keyPath_;
    std::string text_;
};

std::optional<std::string> findDataFolderFault(platform::Platform& platform, const std::string& folder) {
    const auto status = platform.files.status(folder, platform::Follow::Yes);
    if (status && status->kind == platform::FileKind::Folder) return std::nullopt;
    return folder + " is not a valid location.";
}

std::optional<std::string> findWalkRootsFault(platform::Platform& platform, const std::string& text) {
    std::istringstream lines(text);
    for (std::string folder; std::getline(lines, folder);) {
        if (auto fault = findDataFolderFault(platform, folder)) return fault;
    }
    return std::nullopt;
}

std::optional<std::string> findSheetFault(platform::Platform& platform, const SheetFields& fields) {
    return findFault(fields, platform.files, platform.volumes, platform.paths);
}

}  // namespace

std::string storedText(const ConfigurationKey& key, const std::string& text, const base::PathRules& paths) {
    return isDataFolder(key) && !text.empty() ? paths.withSeparator(text) : text;
}

std::optional<std::string> findChangeFault(platform::Platform& platform, const ConfigurationKey& key,
                                           const std::string& text) {
    if (const auto fault = findFault(key, text)) return fault;
    if (isDataFolder(key)) return findDataFolderFault(platform, text);
    if (key.form == Form::Paths) return findWalkRootsFault(platform, text);
    ChangedSettings changed(platform.settings, key.name, text);
    SheetFields after = SheetFields::of(Configuration(changed, platform.ui));
    // Reading would put the fall-back in the place of an empty suffix.
    if (key.name == key::kBackupSuffix) after.suffix = text;
    const SheetFields before = SheetFields::of(Configuration(platform.settings, platform.ui));
    const auto fault = findSheetFault(platform, after);
    return fault == findSheetFault(platform, before) ? std::nullopt : fault;
}

}  // namespace corvalence::settings
