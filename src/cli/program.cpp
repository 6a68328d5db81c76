#include "cli/program.h"

#include <new>

#include "cli/command_line.h"
#include "cli/console_text.h"
#include "cli/terminal_bell.h"
#include "files/database_copy.h"

namespace corvalence::cli {

namespace {

ExitCode runCommand(const Host& host, const Invocation& invocation, ConsoleUserInterface& ui) {
    const Options& options = invocation.options;
    std::optional<std::string> home;
    if (options.home) home = host.paths.absolute(*options.home, host.process.currentFolder());
    if (home && home->empty()) throw CommandEnd(ExitCode::Usage, "--home takes a folder.");
    const Place place = host.openPlace(home);
    TerminalBell bell(host.err, !options.quiet && host.terminal.errorIsTerminal());
    platform::Platform platform{host.files, host.access,     host.volumes, host.process, host.types,
                                host.clock, *place.settings, bell,         ui,           host.paths};
    Context context{platform, host.terminal, ui, options, place.dataRoot, host.in, host.out, host.err};
    const ExitCode code = invocation.command(context);
    host.out.flush();
    if (!host.out) throw CommandEnd(ExitCode::Failed, "The results could not be written to standard output.");
    return code;
}

/// Runs the command and turns every way in which it can fail into what the user is told.
ExitCode runGuarded(const Host& host, const Invocation& invocation, ConsoleUserInterface& ui) {
    const auto tell = [&](const std::string& text) { ui.message(platform::Icon::Stop, text); };
    try {
        return runCommand(host, invocation, ui);
    } catch (const CommandEnd& end) {
        if (*end.what() != '\0') tell(end.what());
        return end.code();
    } catch (const files::DatabaseChanged& changed) {
        tell(changed.what());
        return ExitCode::Refused;
    } catch (const std::bad_alloc&) {
        tell("Not enough memory.");
        return ExitCode::Failed;
    } catch (const std::exception& failure) {
        tell(failure.what());
        return ExitCode::Failed;
    }
}

}  // namespace

ExitCode runProgram(const Host& host, const std::vector<std::string>& arguments) {
    const auto parsed = parseCommandLine(arguments, host.out, host.err);
    if (const auto* code = std::get_if<ExitCode>(&parsed)) return *code;
    const Invocation& invocation = std::get<Invocation>(parsed);
    ConsoleUserInterface ui(host.terminal, host.process, host.clock, host.err,
                            {invocation.options.quiet, invocation.options.yes});
    const ExitCode code = runGuarded(host, invocation, ui);
    if (code == ExitCode::Cancelled) ui.message(platform::Icon::Warning, "Cancelled.");
    return code;
}

}  // namespace corvalence::cli
