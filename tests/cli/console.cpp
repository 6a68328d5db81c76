#include "console.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace corvalence::test {

Console::Console() {
    std::filesystem::create_directory(folder / "files");
    process.folder = folder / "files";
}

Outcome Console::run(std::vector<std::string> arguments) {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    if (outputFails) out.setstate(std::ios::badbit);
    const cli::Host host{files,
                         access,
                         system.volumes,
                         status,
                         process,
                         system.types,
                         clock,
                         terminal,
                         {system.streams, recycleBin, services, registry, system.accessLists},
                         mail,
                         supervisor,
                         system.paths,
                         in,
                         out,
                         err,
                         [this](const std::optional<std::string>& given) {
                             const std::string root = given.value_or(home());
                             return cli::Place{
                                 system.paths.withSeparator(root),
                                 std::make_unique<SystemSettingsStore>(
                                     files, system.paths.join(root, "settings.json"), system.paths)};
                         },
                         builtHelp};
    Outcome outcome;
    outcome.code = static_cast<int>(cli::runProgram(host, arguments));
    outcome.out = out.str();
    outcome.err = err.str();
    return outcome;
}

Outcome Console::done(std::vector<std::string> arguments) {
    const Outcome outcome = run(std::move(arguments));
    EXPECT_EQ(outcome.code, 0) << outcome.out << outcome.err;
    return outcome;
}

void Console::begin() {
    done({"init"});
    done({"create", "file-contents", "db"});
    done({"add", "db", "--location", "."});
}

std::vector<std::string> Console::leftovers() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with("Chk123456789z")) continue;  // a report
        for (const std::string_view ending : {"123456789z", "987654321z", "123456789s", "123456789n"}) {
            if (name.ends_with(ending)) names.push_back(name);
        }
    }
    return names;
}

}  // namespace corvalence::test
