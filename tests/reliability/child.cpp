// One scenario in a process of its own, which may end in the middle of it:
//     reliability_child FOLDER SCENARIO OPERATION
// FOLDER holds the world, OPERATION is the number of the change to files at which the process ends (0: none).
// SCENARIO "install" makes the installation, "start" only starts a run.

#include <gtest/gtest.h>

#include <charconv>
#include <cstdio>
#include <string>

#include "scenarios.h"

namespace corvalence::test {
namespace {

constexpr int kDone = 0;
constexpr int kNotDone = 1;
constexpr int kRefused = 2;

int run(const std::string& folder, const std::string& name, std::uint64_t operation) {
    World world(folder);
    world.machine.ui.answers.assign(100, true);
    world.machine.faults.endProcessAt(operation);
    if (name == "install") return world.install() == core::InstallResult::Installed ? kDone : kRefused;
    if (world.start() != core::StartResult::Ready) return kRefused;
    if (name == "start") return kDone;
    const Claim claim = scenarioOf(name).act(world);
    if (!claim.done) std::fprintf(stderr, "%s\n", claim.said.c_str());
    return claim.done ? kDone : kNotDone;
}

}  // namespace
}  // namespace corvalence::test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::GTEST_FLAG(throw_on_failure) = true;
    if (argc != 4) return 3;
    const std::string operation = argv[3];
    std::uint64_t number = 0;
    std::from_chars(operation.data(), operation.data() + operation.size(), number);
    return corvalence::test::run(argv[1], argv[2], number);
}
