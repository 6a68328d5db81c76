#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "settings/configuration_rules.h"

namespace corvalence::cli {

namespace {

namespace key = settings::key;

// Folders that the program itself keeps its files in. They are stored with a closing separator.
constexpr std::array kDataFolderKeys = {key::kInstallDirectory, key::kBackupFilesDirectory,
                                        key::kChangedFilesDirectory, key::kScheduleDirectory};

/// The settings as they would be with one key changed.
class ChangedSettings : public platform::SettingsStore {
  public:
    ChangedSettings(platform::SettingsStore& inner, std::string_view name, std::string text)
        : inner_(inner), keyPath_(std::string(settings::kKeyRoot).append(name)), text_(std::move(text)) {}

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

const settings::ConfigurationKey& findKey(const std::string& name) {
    const auto* row = settings::findConfigurationKey(name);
    if (row != nullptr) return *row;
    throw CommandEnd(ExitCode::Usage, name + " is no key. All keys are shown by:  corvalencectl config list");
}

/// The text in the form in which it is stored: paths absolute, data folders with a closing separator.
std::string completed(Context& context, const settings::ConfigurationKey& row, const std::string& text) {
    const bool isDataFolder =
        std::find(kDataFolderKeys.begin(), kDataFolderKeys.end(), row.name) != kDataFolderKeys.end();
    const bool isPath = row.form == settings::Form::Path && !text.empty() && text != "*";
    const std::string path = isPath ? absolutePath(context, text) : text;
    if (!isDataFolder) return path;
    const std::string folder = context.platform.paths.withSeparator(path);
    const auto status = context.platform.files.status(folder, platform::Follow::Yes);
    if (path.empty() || !status || status->kind != platform::FileKind::Folder) {
        throw CommandEnd(ExitCode::Usage, folder + " is not a valid location.");
    }
    return folder;
}

/// What the change would break among the keys that belong together. A fault that is there already does not
/// keep the user from changing something else.
std::optional<std::string> findNewFault(Context& context, const settings::ConfigurationKey& row,
                                        const std::string& text) {
    platform::Platform& system = context.platform;
    ChangedSettings changed(system.settings, row.name, text);
    auto after = settings::SheetFields::of(settings::Configuration(changed, context.ui));
    if (row.name == key::kBackupSuffix) after.suffix = text;
    const auto fault = settings::findFault(after, system.files, system.volumes, system.paths);
    const auto before =
        settings::findFault(settings::SheetFields::of(settings::Configuration(system.settings, context.ui)),
                            system.files, system.volumes, system.paths);
    return fault == before ? std::nullopt : fault;
}

/// The root that the settings name; where that is gone, as after a move, the one that they lie with.
std::string presentRoot(Context& context, const settings::Configuration& configuration) {
    const std::string root = configuration.folder(key::kInstallDirectory);
    return context.platform.files.status(root, platform::Follow::Yes) ? root : context.dataRoot;
}

std::string effectiveText(Context& context, const settings::ConfigurationKey& row) {
    const settings::Configuration configuration(context.platform.settings, context.ui);
    const auto stored = configuration.stored(row.name);
    return stored ? settings::acceptedText(row, *stored) : std::string(row.fallback);
}

void writeMembers(JsonWriter& json, const settings::ConfigurationKey& row, const std::string& text) {
    json.text("key", row.name);
    json.text("name", row.consoleName);
    json.text("text", text);
}

void writeKey(Context& context, const settings::ConfigurationKey& row, const std::string& text) {
    JsonWriter json(context.out);
    json.beginObject();
    writeMembers(json, row, text);
    json.endAll();
}

}  // namespace

ExitCode runConfigList(Context& context) {
    requireInstallation(context);
    JsonWriter json(context.out);
    if (context.options.json) {
        json.beginObject();
        json.beginArray("keys");
    }
    for (const settings::ConfigurationKey& row : settings::configurationKeys()) {
        const std::string text = effectiveText(context, row);
        if (context.options.json) {
            json.beginObject();
            writeMembers(json, row, text);
            json.text("meaning", row.meaning);
            json.end();
        } else {
            context.out << std::string(row.name) + "\t" + std::string(row.consoleName) + "\t" + shown(text) +
                               "\t" + std::string(row.meaning) + "\n";
        }
    }
    json.endAll();
    return ExitCode::Done;
}

ExitCode runConfigGet(Context& context, const ConfigArguments& arguments) {
    requireInstallation(context);
    const settings::ConfigurationKey& row = findKey(arguments.key);
    const std::string text = effectiveText(context, row);
    if (context.options.json) {
        writeKey(context, row, text);
    } else {
        context.out << shown(text) + "\n";
    }
    return ExitCode::Done;
}

ExitCode runConfigSet(Context& context, const ConfigArguments& arguments) {
    requireInstallation(context);
    const settings::ConfigurationKey& row = findKey(arguments.key);
    if (const auto fault = settings::findFault(row, arguments.text))
        throw CommandEnd(ExitCode::Usage, *fault);
    const std::string text = completed(context, row, arguments.text);
    settings::Configuration configuration(context.platform.settings, context.ui);
    const auto lock = lockInstallation(context, presentRoot(context, configuration));
    if (const auto fault = findNewFault(context, row, text)) throw CommandEnd(ExitCode::Usage, *fault);
    if (!configuration.write(row.name, text)) return ExitCode::Failed;
    if (context.options.json) writeKey(context, row, text);
    return ExitCode::Done;
}

}  // namespace corvalence::cli
