#include "cli/changed_file_prompt.h"

#include "base/number_text.h"
#include "cli/changed_file_text.h"
#include "cli/console_text.h"

namespace corvalence::cli {

namespace {

constexpr std::array<std::string_view, 2> kRestoreChoices = {
    "Restore the original file and delete the changed file.",
    "Restore the original file and move the changed file to the 'Changed Files' folder.",
};

std::string choiceLine(std::size_t number, std::string_view text) {
    return "  " + std::to_string(number) + "  " + std::string(text) + "\n";
}

}  // namespace

files::Reaction ChangedFilePrompt::show(const files::ChangedFileDetails& details) {
    context_.ui.clearLine();
    writeChangedFile(context_.err, details, context_.platform.clock);
    const std::size_t count = details.onlyIgnore ? 1 : files::kReactions.size();
    std::string choices;
    for (std::size_t i = 0; i < count; ++i)
        choices += choiceLine(i + 1, files::kReactions[i].button);
    context_.err << choices << std::flush;
    return files::kReactions[choose(count, 0).value_or(0)].reaction;
}

std::optional<files::RestoreChoice> ChangedFilePrompt::showRestore(const std::string& path) {
    context_.ui.clearLine();
    std::string text = "File restore from backup.\n" + shown(path) + "\n";
    for (std::size_t i = 0; i < kRestoreChoices.size(); ++i)
        text += choiceLine(i + 1, kRestoreChoices[i]);
    context_.err << text << std::flush;
    const auto choice = choose(kRestoreChoices.size(), 1);
    if (!choice) return std::nullopt;
    return static_cast<files::RestoreChoice>(*choice);
}

std::optional<std::size_t> ChangedFilePrompt::choose(std::size_t count, std::size_t fallback) {
    const std::string prompt = "Choice [" + std::to_string(fallback + 1) + "]: ";
    while (!context_.platform.process.cancelRequested()) {
        const auto answer = context_.terminal.readLine(prompt);
        if (!answer) break;
        if (answer->empty()) return fallback;
        const auto number = base::scanInteger(*answer);
        if (number && *number >= 1 && static_cast<std::size_t>(*number) <= count)
            return static_cast<std::size_t>(*number) - 1;
    }
    return std::nullopt;
}

}  // namespace corvalence::cli
