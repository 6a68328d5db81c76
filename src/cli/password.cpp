#include "cli/commands.h"
#include "cli/json_writer.h"
#include "cli/password_prompt.h"
#include "cli/session.h"
#include "core/password_change.h"

namespace corvalence::cli {

namespace {

/// The three fields at a terminal, or from the lines of the password file. The current password is the one
/// that the run was started with.
class PasswordChangePrompt : public core::PasswordChangeDialog {
  public:
    PasswordChangePrompt(Context& context, PasswordPrompt& prompt) : context_(context), prompt_(prompt) {}

    bool show(core::PasswordEntry& entry) override {
        const bool onTerminal = prompt_.asksOnTerminal();
        if (wasShown_ && !onTerminal) return false;
        if (!wasShown_ && onTerminal)
            context_.ui.message(platform::Icon::Information, std::string(core::kPasswordChangeWarning));
        wasShown_ = true;
        auto chosen = onTerminal ? prompt_.readSecret("New password: ") : prompt_.readNextLine();
        if (!chosen) return leave();
        auto confirmation = onTerminal ? prompt_.readSecret("New password again: ") : prompt_.readNextLine();
        if (!confirmation) return leave();
        entry.current = crypto::SecretText(prompt_.given());
        entry.chosen = std::move(*chosen);
        entry.confirmation = std::move(*confirmation);
        return true;
    }

    std::optional<std::string> selectReport() override {
        if (!context_.terminal.isInteractive()) return std::nullopt;
        const auto path = context_.terminal.readLine("Select a report file. ");
        if (!path || path->empty()) return std::nullopt;
        return absolutePath(context_, *path);
    }

  private:
    bool leave() {
        if (!context_.platform.process.cancelRequested()) {
            context_.ui.message(platform::Icon::Stop,
                                prompt_.asksOnTerminal()
                                    ? "no new password was given"
                                    : "no new password was given: it stands in the second line, its "
                                      "confirmation in the third");
        }
        return false;
    }

    Context& context_;
    PasswordPrompt& prompt_;
    bool wasShown_ = false;
};

std::vector<std::string> reportPaths(Context& context, core::Run& run,
                                     const std::vector<std::string>& arguments) {
    std::vector<std::string> paths;
    for (const std::string& argument : arguments) {
        paths.push_back(absolutePath(context, argument));
        if (const auto fault = core::findReportFault(run.vault(), paths.back()))
            throw CommandEnd(ExitCode::Usage, *fault);
    }
    return paths;
}

ExitCode codeOf(Context& context, core::PasswordChangeResult result) {
    const bool isCancelled = context.platform.process.cancelRequested();
    switch (result) {
        case core::PasswordChangeResult::Changed:
            return ExitCode::Done;
        case core::PasswordChangeResult::Retained:
            return isCancelled ? ExitCode::Cancelled : ExitCode::Done;
        case core::PasswordChangeResult::Left:
            return isCancelled ? ExitCode::Cancelled : ExitCode::Refused;
        case core::PasswordChangeResult::Declined:
        case core::PasswordChangeResult::Cancelled:
            return ExitCode::Cancelled;
    }
    return ExitCode::Failed;
}

}  // namespace

ExitCode runPassword(Context& context, const PasswordArguments& arguments) {
    PasswordPrompt prompt(context);
    const auto run = startRun(context, prompt);
    PasswordChangePrompt dialog(context, prompt);
    const auto outcome = core::changePassword(*run, dialog, reportPaths(context, *run, arguments.reports));
    const bool isChanged = outcome.result == core::PasswordChangeResult::Changed;
    if (context.options.json) {
        JsonWriter& json = context.json;
        json.beginObject();
        json.flag("changed", isChanged);
        json.beginArray("left");
        for (const core::LeftFile& file : outcome.left) {
            json.beginObject();
            json.path("path", file.path);
            json.text("text", file.text);
            json.end();
        }
        json.end();
    } else if (!isChanged) {
        context.out << "The password is the old one.\n";
    }
    return codeOf(context, outcome.result);
}

}  // namespace corvalence::cli
