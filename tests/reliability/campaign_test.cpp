#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "aftermath.h"
#include "base/number_text.h"
#include "machine.h"
#include "run_program.h"

namespace corvalence::test {
namespace {

std::string nameOf(const testing::TestParamInfo<std::string_view>& info) {
    return std::string(info.param);
}

std::vector<std::string_view> names() {
    std::vector<std::string_view> all;
    for (const Scenario& scenario : scenarios())
        all.push_back(scenario.name);
    return all;
}

/// Campaigns look at every n-th place: CORVALENCE_SAMPLE says which, 1 being all of them. Where it is not
/// set, an emulated system takes a sample.
std::uint64_t stride() {
    const char* const text = std::getenv("CORVALENCE_SAMPLE");
    const auto number = base::scanWholeUnits(text == nullptr ? "" : text);
    return std::max<std::uint64_t>(number.value_or(isEmulated() ? 7 : 1), 1);
}

class Campaign : public testing::TestWithParam<std::string_view> {
  protected:
    static constexpr std::uint64_t kMostOperations = 1000;

    int runChild(const std::string& name, std::uint64_t operation) const {
        return runProgram(RELIABILITY_CHILD, {stage.folder(), name, std::to_string(operation)});
    }

    const Scenario& scenario = scenarioOf(GetParam());
    const Stage stage{scenario};
};

class Kill : public Campaign {};

// Every change to a file is once the last that the program makes; and every now and then the next start is
// ended as well.
TEST_P(Kill, AtAnyPointLosesNothing) {
    int recovered = 0;
    int points = 0;
    // Samples of different actions begin at different places.
    for (std::uint64_t operation = 1 + scenario.name.size() % stride();; operation += stride()) {
        SCOPED_TRACE("ended at operation " + std::to_string(operation));
        ASSERT_LT(operation, kMostOperations);
        stage.reset();
        const int code = runChild(std::string(scenario.name), operation);
        ASSERT_TRUE(code == 0 || code == FaultPlan::kEndedExitCode) << code;
        if (operation % 3 == 0) runChild("start", operation / 3 % 12 + 1);
        World world(stage.folder());
        if (code == 0) {
            world.password.other = kNewPassword;
            ASSERT_EQ(world.start(), core::StartResult::Ready);
            EXPECT_TRUE(scenario.isDone(world));
            if (scenario.expectHeld != nullptr) scenario.expectHeld(world);
            break;
        }
        recovered += expectNothingLost(world, stage, scenario);
        ASSERT_FALSE(HasFailure());
        ++points;
    }
    // A save never needs the backup database; it is for databases that were damaged.
    EXPECT_TRUE(scenario.name == "recover" ? recovered > 0 : recovered == 0) << recovered;
    RecordProperty("kill_points", points);
    RecordProperty("recovered", recovered);
    std::printf("%s: %d kill points, %d databases recovered from their backup\n",
                std::string(scenario.name).c_str(), points, recovered);
}

INSTANTIATE_TEST_SUITE_P(Reliability, Kill, testing::ValuesIn(names()), nameOf);

// An installation that was begun is finished by making it again.
TEST(KillWhileInstalling, LosesNothing) {
    int points = 0;
    // The settings are written key by key, in the same steps each: not every key's need be met.
    for (std::uint64_t operation = 1;; operation += operation < 40 ? stride() : 7 * stride()) {
        SCOPED_TRACE("ended at operation " + std::to_string(operation));
        ASSERT_LT(operation, 1000U);
        const TempFolder home{quickFolder()};
        const int code = runProgram(RELIABILITY_CHILD, {home.path(), "install", std::to_string(operation)});
        World world(home.path());
        const bool isInstalled = core::isInstalled(world.platform);
        EXPECT_EQ(world.install(),
                  isInstalled ? core::InstallResult::AlreadyInstalled : core::InstallResult::Installed);
        ASSERT_EQ(world.start(), core::StartResult::Ready) << world.machine.ui.transcript();
        EXPECT_TRUE(world.machine.ui.messages.empty()) << world.machine.ui.transcript();
        EXPECT_TRUE(world.create());
        world.write("a", "one");
        EXPECT_EQ(world.add({"a"}).added, 1U);
        world.write("a", "two");
        EXPECT_TRUE(world.restore("a").restored);
        ASSERT_FALSE(testing::Test::HasFailure());
        if (code == 0) break;
        ASSERT_EQ(code, FaultPlan::kEndedExitCode);
        ++points;
    }
    std::printf("install: %d kill points\n", points);
}

class Failing : public Campaign {
  protected:
    void expectClear(const base::FileFailure& failure, base::Cause cause) {
        EXPECT_EQ(failure.cause(), cause) << failure.what();
        EXPECT_FALSE(failure.path().empty());
    }

    /// False once the scenario goes through without meeting the mishap.
    bool strikeAt(std::uint64_t operation, base::Cause cause, FaultPlan::Lasts lasts) {
        stage.reset();
        World world(stage.folder());
        world.machine.ui.answers.assign(100, true);
        world.machine.faults.failAt(operation, cause, lasts);
        bool claimed = false;
        try {
            EXPECT_EQ(world.start(), core::StartResult::Ready);
            const Claim claim = scenario.act(world);
            claimed = claim.done;
            EXPECT_TRUE(claimed || claim.said.find(base::reasonText(cause)) != std::string::npos ||
                        claim.said.find("Registry error.") != std::string::npos)
                << claim.said;
        } catch (const base::FileFailure& failure) {
            expectClear(failure, cause);
        }
        const bool struck = world.machine.faults.hasStruck();
        world.stop();
        for (const auto& [name, content] : stage.before())
            EXPECT_TRUE(std::filesystem::exists(world.path(name))) << name << " is not in its place";
        if (claimed) {
            world.machine.faults.clear();
            world.password.other = kNewPassword;
            EXPECT_EQ(world.start(), core::StartResult::Ready);
            EXPECT_TRUE(scenario.isDone(world)) << "not done, though it was said";
        } else {
            const int recovered = expectNothingLost(world, stage, scenario);
            EXPECT_TRUE(recovered == 0 || scenario.name == "recover");
        }
        return struck;
    }

    void strikeEverywhere(base::Cause cause, FaultPlan::Lasts lasts) {
        for (std::uint64_t operation = 1 + scenario.name.size() % stride();; operation += stride()) {
            SCOPED_TRACE("failed at operation " + std::to_string(operation));
            ASSERT_LT(operation, kMostOperations);
            if (!strikeAt(operation, cause, lasts)) break;
            ASSERT_FALSE(HasFailure());
        }
    }
};

TEST_P(Failing, ForWantOfRoomIsToldAndLosesNothing) {
    strikeEverywhere(base::Cause::DiskFull, FaultPlan::Lasts::FromThere);
}

TEST_P(Failing, ForWantOfRightsIsToldAndLosesNothing) {
    strikeEverywhere(base::Cause::AccessDenied, FaultPlan::Lasts::Once);
}

INSTANTIATE_TEST_SUITE_P(Reliability, Failing, testing::ValuesIn(names()), nameOf);

}  // namespace
}  // namespace corvalence::test
