#include "cli/program.h"

#include <new>
#include <optional>

#include "cli/command_line.h"
#include "cli/console_text.h"
#include "cli/terminal_bell.h"
#include "files/database_copy.h"

namespace corvalence::cli {

namespace {

/// How a command ended, and what is to be told of it.
struct Ending {
    ExitCode code = ExitCode::Done;
    std::string text = {};
    std::optional<base::Cause> cause = std::nullopt;
    bool isFailure = true;
};

ExitCode runCommand(const Host& host, const Invocation& invocation, ConsoleUserInterface& ui,
                    JsonWriter& json) {
    const Options& options = invocation.options;
    std::optional<std::string> home;
    if (options.home) home = host.paths.absolute(*options.home, host.process.currentFolder());
    if (home && home->empty()) throw CommandEnd(ExitCode::Usage, "--home takes a folder.");
    const Place place = host.openPlace(home);
    TerminalBell bell(host.err, !options.quiet && host.terminal.errorIsTerminal());
    platform::Platform platform{host.files,   host.access, host.volumes, host.status,
                                host.process, host.types,  host.clock,   *place.settings,
                                bell,         ui,          host.paths};
    Context context{platform, host.terminal, host.machine,   host.mail, host.supervisor,
                    ui,       options,       place.dataRoot, host.in,   host.out,
                    host.err, json,          host.builtHelp};
    return invocation.command(context);
}

/// Runs the command and turns every way in which it can fail into what the user is told.
Ending runGuarded(const Host& host, const Invocation& invocation, ConsoleUserInterface& ui,
                  JsonWriter& json) {
    try {
        const ExitCode code = runCommand(host, invocation, ui, json);
        return {code, {}, {}, false};
    } catch (const CommandEnd& end) {
        return {end.code(), end.what()};
    } catch (const files::DatabaseChanged& changed) {
        return {ExitCode::Refused, changed.what()};
    } catch (const base::FileFailure& failure) {
        return {ExitCode::Failed, failure.what(), failure.cause()};
    } catch (const std::bad_alloc&) {
        return {ExitCode::Failed, "Not enough memory."};
    } catch (const std::exception& failure) {
        return {ExitCode::Failed, failure.what()};
    }
}

/// Closes the document. One that the command did not come to the end of, or did not begin, says why.
void finishDocument(JsonWriter& json, const Ending& ending, const std::string& lastText) {
    if ((ending.isFailure || !json.wasBegun()) && json.backToOutermost()) {
        json.beginObject("error");
        json.text("message", ending.text.empty() ? lastText : ending.text);
        if (ending.cause) {
            json.text("reason", base::reasonText(*ending.cause));
        } else {
            json.null("reason");
        }
    }
    json.endAll();
}

}  // namespace

ExitCode runProgram(const Host& host, const std::vector<std::string>& arguments) {
    const auto parsed = parseCommandLine(arguments, host.out, host.err);
    if (const auto* code = std::get_if<ExitCode>(&parsed)) return *code;
    const Invocation& invocation = std::get<Invocation>(parsed);
    ConsoleUserInterface ui(host.terminal, host.process, host.clock, host.err,
                            {invocation.options.quiet, invocation.options.yes});
    JsonWriter json(host.out);
    Ending ending = runGuarded(host, invocation, ui, json);
    if (!ending.text.empty()) ui.message(platform::Icon::Stop, ending.text);
    if (ending.code == ExitCode::Cancelled) ui.message(platform::Icon::Warning, "Cancelled.");
    if (invocation.options.json) finishDocument(json, ending, ui.lastText());
    host.out.flush();
    if (!host.out && !ending.isFailure) {
        ui.message(platform::Icon::Stop, "The results could not be written to standard output.");
        return ExitCode::Failed;
    }
    return ending.code;
}

}  // namespace corvalence::cli
