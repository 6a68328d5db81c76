#include "core/self_check.h"

#include <algorithm>
#include <array>

#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/json_writer.h"

namespace corvalence::cli {

namespace {

using core::SelfCheckFiles;
using core::SelfCheckResult;

constexpr std::string_view kOwnName = "corvalencectl";
constexpr std::string_view kWindowName = "corvalence";

struct ResultRow {
    std::string_view name;
    std::string_view text;  // behind the program's path
};
constexpr std::array<ResultRow, 5> kResults = {{
    {"same", " is as it was built."},
    {"changed", " or the file with its digest HAS BEEN CHANGED !"},
    {"no digest", " cannot be checked: the file with its digest cannot be read."},
    {"unreadable", " cannot be read."},
    {"cancelled", " was not checked."},
}};  // by SelfCheckResult

bool isFile(Context& context, const std::string& path) {
    return context.platform.files.status(path, platform::Follow::Yes).has_value();
}

/// This program, and the graphical one where it was installed beside it.
std::vector<SelfCheckFiles> programs(Context& context) {
    const base::PathRules& paths = context.platform.paths;
    const std::string own = context.platform.process.programFile();
    std::vector<SelfCheckFiles> found = {SelfCheckFiles::beside(own, core::kConsoleDigest, paths)};
    const std::string_view name = paths.fileName(own);
    if (!paths.beginsWith(name, kOwnName)) return found;
    const std::string window =
        std::string(paths.folder(own)).append(kWindowName).append(name.substr(kOwnName.size()));
    auto files = SelfCheckFiles::beside(window, core::kProgramDigest, paths);
    if (isFile(context, files.program) || isFile(context, files.digest)) found.push_back(std::move(files));
    return found;
}

ExitCode exitCodeOf(SelfCheckResult result) {
    if (result == SelfCheckResult::Cancelled) return ExitCode::Cancelled;
    return result == SelfCheckResult::Same ? ExitCode::Done : ExitCode::Differences;
}

ExitCode checkPrograms(Context& context, const std::vector<SelfCheckFiles>& programs) {
    JsonWriter& json = context.json;
    ExitCode code = ExitCode::Done;
    if (context.options.json) json.beginArray("programs");
    for (const SelfCheckFiles& files : programs) {
        const SelfCheckResult result = core::SelfCheck(context.platform, files).checkProgram();
        const ResultRow& row = kResults[static_cast<std::size_t>(result)];
        if (context.options.json) {
            json.beginObject();
            json.path("path", files.program);
            json.path("digest", files.digest);
            json.text("result", row.name);
            json.end();
        } else {
            context.out << shown(files.program) + std::string(row.text) + "\n";
        }
        if (result == SelfCheckResult::Cancelled) return ExitCode::Cancelled;
        code = std::max(code, exitCodeOf(result));
    }
    if (context.options.json) json.end();
    return code;
}

/// The help belongs to the graphical program; where neither of them is, there is nothing to check.
ExitCode checkHelp(Context& context, const std::vector<SelfCheckFiles>& programs) {
    const SelfCheckFiles& files = programs.front();
    if (!context.builtHelp || (programs.size() == 1 && !isFile(context, files.help))) return ExitCode::Done;
    const SelfCheckResult result = core::SelfCheck(context.platform, files).checkHelp(*context.builtHelp);
    const ResultRow& row = kResults[static_cast<std::size_t>(result)];
    if (context.options.json) {
        JsonWriter& json = context.json;
        json.beginObject("help");
        json.path("path", files.help);
        json.text("result", row.name);
        json.end();
    } else {
        const bool isChanged = result == SelfCheckResult::Changed;
        context.out << shown(files.help) + std::string(isChanged ? " HAS BEEN MODIFIED !" : row.text) + "\n";
    }
    return exitCodeOf(result);
}

}  // namespace

ExitCode runSelfCheck(Context& context) {
    const std::vector<SelfCheckFiles> found = programs(context);
    if (context.options.json) context.json.beginObject();
    const ExitCode code = checkPrograms(context, found);
    return code == ExitCode::Cancelled ? code : std::max(code, checkHelp(context, found));
}

}  // namespace corvalence::cli
