#include "cli/changed_file_prompt.h"

#include <array>

#include "base/number_text.h"
#include "cli/analysis_text.h"
#include "cli/changed_file_text.h"
#include "cli/console_text.h"
#include "files/restore_choices.h"

namespace corvalence::cli {

namespace {

struct AnalysisChoice {
    std::string_view letter;
    std::string_view text;
    files::AnalysisView view;
};

constexpr std::array<AnalysisChoice, 2> kAnalysisChoices = {{
    {"t", "Further analysis [Text Display]", files::AnalysisView::Text},
    {"h", "Further analysis [Hex Display]", files::AnalysisView::Hex},
}};

// What a screen takes; a file that was written anew differs everywhere.
constexpr std::uint64_t kMostRows = 10;

std::string choiceLine(std::string_view key, std::string_view text) {
    return "  " + std::string(key) + "  " + std::string(text) + "\n";
}

}  // namespace

files::Reaction ChangedFilePrompt::show(const files::ChangedFileDetails& details) {
    context_.ui.clearLine();
    writeChangedFile(context_.err, details, context_.platform.clock);
    const std::size_t count = details.onlyIgnore ? 1 : files::kReactions.size();
    std::string choices;
    for (std::size_t i = 0; i < count; ++i)
        choices += choiceLine(std::to_string(i + 1), files::kReactions[i].button);
    for (const AnalysisChoice& choice : kAnalysisChoices)
        choices += choiceLine(choice.letter, choice.text);
    context_.err << choices << std::flush;
    const auto other = [&](const std::string& answer) {
        for (const AnalysisChoice& choice : kAnalysisChoices)
            if (answer == choice.letter) analyse(details.then, choice.view);
    };
    return files::kReactions[choose(count, 0, other).value_or(0)].reaction;
}

void ChangedFilePrompt::analyse(const files::FileRecord& record, files::AnalysisView view) {
    files::FileAnalysis analysis(vault_, database_, record);
    std::string text = whyNotRead(analysis, record.path);
    if (text.empty()) text = whyNotCompared(analysis, record.path);
    if (!text.empty()) {
        context_.err << shown(text, LineFeeds::Keep) + "\n" << std::flush;
        return;
    }
    try {
        writeDifferences(analysis, view);
    } catch (const base::FileFailure& failure) {
        context_.err << shown(failure.what()) + "\n" << std::flush;
    }
}

void ChangedFilePrompt::writeDifferences(files::FileAnalysis& analysis, files::AnalysisView view) {
    std::string text;
    std::uint64_t differing = 0;
    const auto visit = [&](const files::DifferingRow& row) {
        if (++differing <= kMostRows) text += differingRowText(view, row);
        return differing <= kMostRows;
    };
    const auto progress = context_.ui.openProgress(std::string(files::analysisStatus(view)));
    files::ByteProgress bytes(*progress, analysis.size());
    const auto walk = analysis.forEachDifference(view, 0, bytes, visit);
    context_.ui.clearLine();
    if (walk == files::FileAnalysis::Walk::Cancelled) return;
    text += walk == files::FileAnalysis::Walk::Whole
                ? analysisSummary(differing, analysis.rowCount(view))
                : "More rows differ. All of them are shown by:  corvalencectl analyse";
    context_.err << text + "\n" << std::flush;
}

std::optional<files::RestoreChoice> ChangedFilePrompt::showRestore(const std::string& path) {
    context_.ui.clearLine();
    std::string text = "File restore from backup.\n" + shown(path) + "\n";
    for (std::size_t i = 0; i < files::kRestoreChoices.size(); ++i)
        text += choiceLine(std::to_string(i + 1), files::kRestoreChoices[i].button);
    context_.err << text << std::flush;
    const auto choice = choose(files::kRestoreChoices.size(), 1);
    if (!choice) return std::nullopt;
    return files::kRestoreChoices[*choice].choice;
}

std::optional<std::size_t> ChangedFilePrompt::choose(std::size_t count, std::size_t fallback,
                                                     const std::function<void(const std::string&)>& other) {
    const std::string prompt = "Choice [" + std::to_string(fallback + 1) + "]: ";
    while (!context_.platform.process.cancelRequested()) {
        const auto answer = context_.terminal.readLine(prompt);
        if (!answer) break;
        if (answer->empty()) return fallback;
        const auto number = base::scanInteger(*answer);
        if (number && *number >= 1 && static_cast<std::size_t>(*number) <= count)
            return static_cast<std::size_t>(*number) - 1;
        if (other) other(*answer);
    }
    return std::nullopt;
}

}  // namespace corvalence::cli
