#include "core/self_check.h"

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

}  // namespace

ExitCode runSelfCheck(Context& context) {
    JsonWriter& json = context.json;
    if (context.options.json) {
        json.beginObject();
        json.beginArray("programs");
    }
    ExitCode code = ExitCode::Done;
    for (const SelfCheckFiles& files : programs(context)) {
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
        if (result != SelfCheckResult::Same) code = ExitCode::Differences;
    }
    return code;
}

}  // namespace corvalence::cli
