#include <sstream>

#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"
#include "cli/session.h"
#include "core/installation.h"
#include "settings/configuration_change.h"
#include "store/recent_list.h"

namespace corvalence::cli {

namespace {

namespace key = settings::key;

const settings::ConfigurationKey& findKey(const std::string& name) {
    const auto* row = settings::findConfigurationKey(name);
    if (row != nullptr) return *row;
    throw CommandEnd(ExitCode::Usage, name + " is no key. All keys are shown by:  corvalencectl config list");
}

/// The root that the settings name; where that is gone, as after a move, the one that they lie with.
std::string presentRoot(Context& context, const settings::Configuration& configuration) {
    const std::string root = configuration.folder(key::kInstallDirectory);
    return context.platform.files.status(root, platform::Follow::Yes) ? root : context.dataRoot;
}

/// What --home names has to stay the installation's own folder.
void requireOwnRoot(Context& context, const settings::ConfigurationKey& row, const std::string& text) {
    if (row.name != key::kInstallDirectory || !context.options.home) return;
    if (core::isSameFolder(context.platform, text, context.dataRoot)) return;
    throw CommandEnd(ExitCode::Usage, text + " is not the folder that --home names.");
}

std::string effectiveText(Context& context, const settings::ConfigurationKey& row) {
    const settings::Configuration configuration(context.platform.settings, context.ui);
    const auto stored = configuration.stored(row.name);
    return stored ? settings::acceptedText(row, *stored) : std::string(row.fallback);
}

void writeMembers(JsonWriter& json, const settings::ConfigurationKey& row, const std::string& text) {
    json.text("key", row.name);
    json.text("name", row.consoleName);
    json.path("text", text);  // of which many are paths
}

void writeKey(Context& context, const settings::ConfigurationKey& row, const std::string& text) {
    JsonWriter& json = context.json;
    json.beginObject();
    writeMembers(json, row, text);
}

/// A text from the command line with its paths absolute.
std::string enteredText(Context& context, const settings::ConfigurationKey& row, const std::string& text) {
    if (row.form == settings::Form::Path) return text.empty() ? text : absolutePath(context, text);
    if (row.form != settings::Form::Paths) return text;
    std::string paths;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) paths += (paths.empty() ? "" : "\n") + absolutePath(context, line);
    }
    return paths;
}

}  // namespace

ExitCode runConfigList(Context& context) {
    requireInstallation(context);
    JsonWriter& json = context.json;
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
    const std::string text =
        settings::storedText(row, enteredText(context, row, arguments.text), context.platform.paths);
    settings::Configuration configuration(context.platform.settings, context.ui);
    const auto lock = lockInstallation(context, presentRoot(context, configuration));
    if (const auto fault = settings::findChangeFault(context.platform, row, text))
        throw CommandEnd(ExitCode::Usage, *fault);
    requireOwnRoot(context, row, text);
    if (!configuration.write(row.name, text)) return ExitCode::Failed;
    if (row.name == key::kRecentCount || row.name == key::kRecentList) store::RecentList::cut(configuration);
    if (context.options.json) writeKey(context, row, text);
    return ExitCode::Done;
}

}  // namespace corvalence::cli
