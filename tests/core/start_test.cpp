#include "core/start.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/installation.h"
#include "listed_file.h"
#include "store/recent_list.h"
#include "world.h"

namespace corvalence::test {
namespace {

using core::InstallResult;
using core::StartResult;
namespace fs = std::filesystem;

TEST(Install, MakesFoldersEmptySealedFilesAndSettingsForTheirOwnerAlone) {
    World world;
    for (const char* folder :
         {"Backup Files", "Changed Files", "Checking Schedule", "Databases", "Reports"}) {
        EXPECT_TRUE(isOwnersAlone(world.data(folder))) << folder;
    }
    for (const char* file :
         {"Backup Files/Database Index", "Checking Schedule/Scheduled Checking Log File",
          "Checking Schedule/Scheduled Checking Log File~", "Checking Schedule/Database Checking Schedule"}) {
        EXPECT_EQ(fs::file_size(world.data(file)), 0U) << file;
    }
    EXPECT_EQ(world.configuration().text("Install Directory"), world.data(""));
    EXPECT_EQ(world.configuration().text("Config17"), "N");
    EXPECT_EQ(world.configuration().text("Config8"), "0");
    EXPECT_EQ(world.configuration().stored("Backup\\Backup Database Index"), "0");
    EXPECT_TRUE(world.machine.ui.messages.empty());
}

TEST(Install, TouchesNeitherAnInstallationNorWhatIsLeftOfOne) {
    World world;
    world.create();
    world.stop();
    const std::string index = readWholeFile(world.data("Backup Files/Database Index"));
    EXPECT_EQ(core::install(world.platform, world.data("")), InstallResult::AlreadyInstalled);
    world.machine.settings.texts.clear();
    EXPECT_EQ(world.start(), StartResult::NoInstallation);
    EXPECT_EQ(core::install(world.platform, world.data("")), InstallResult::DataInTheWay);
    EXPECT_FALSE(core::isInstalled(world.platform));
    EXPECT_EQ(readWholeFile(world.data("Backup Files/Database Index")), index);
}

TEST(Install, IsFinishedByRunningItAgain) {
    for (std::uint64_t at = 1;; ++at) {
        ASSERT_LT(at, 100U);
        World world;
        world.stop();
        world.machine.settings.texts.clear();
        fs::remove_all(world.data(""));
        world.machine.faults.failAt(at);
        bool failed = false;
        try {
            core::install(world.platform, world.data(""));
        } catch (const base::FileFailure&) {
            failed = true;
        }
        world.machine.faults.clear();
        if (!failed) break;
        EXPECT_EQ(core::install(world.platform, world.data("")), InstallResult::Installed);
        EXPECT_EQ(world.start(), StartResult::Ready);
    }
}

TEST(Start, IsOneAtATimeOnAnInstallation) {
    World world;
    OnePassword password;
    std::unique_ptr<core::Run> second;
    EXPECT_EQ(core::Run::start(world.platform, password, std::chrono::milliseconds(0), second),
              StartResult::AlreadyRunning);
    EXPECT_TRUE(world.machine.ui.saw("Corvalence is already running."));
    EXPECT_EQ(password.asked, 0);
    world.stop();
    EXPECT_EQ(core::Run::start(world.platform, password, std::chrono::milliseconds(0), second),
              StartResult::Ready);
}

TEST(Start, IsForAdministratorsAndAsksThemBeforeAnyPassword) {
    World world;
    world.stop();
    world.process.isOne = false;
    world.password.asked = 0;
    EXPECT_EQ(world.start(), StartResult::NotAdministrator);
    EXPECT_EQ(world.password.asked, 0);
    ASSERT_EQ(world.machine.ui.messages.size(), 1U);
    EXPECT_EQ(world.machine.ui.messages[0].text.substr(0, 118),
              "Corvalence needs to be run from an Administrator account.\n\nIf you require a version that "
              "can be run "
              "from other account");
    world.process.isOne = true;
    EXPECT_EQ(world.start(), StartResult::Ready);
}

TEST(Start, WipesWhatAKilledRunLeftEvenWhenThePasswordIsRefused) {
    World world;
    listFile(world, "a", "one");
    world.open();
    auto copy = world.vault().working.createPlain(world.databasePath(), ".123456789z");
    copy.file().write(base::bytesOf("plain records"));
    copy.abandon();
    EXPECT_EQ(world.leftovers("plain records").size(), 1U);
    world.password.password = "wrong";
    EXPECT_EQ(world.start(), StartResult::PasswordRefused);
    EXPECT_TRUE(world.leftovers("plain records").empty());
}

// A leftover that cannot be removed once kept every command out.
TEST(Start, GoesOnPastALeftoverThatCannotBeCleared) {
    World world;
    auto copy = world.vault().working.createPlain(world.data("Reports/x"), ".123456789z");
    copy.abandon();
    world.machine.faults.failAt(1, base::Cause::AccessDenied);
    EXPECT_EQ(world.start(), StartResult::Ready);
    EXPECT_NE(world.machine.ui.transcript().find("could not be cleared away"), std::string::npos);
    world.machine.faults.clear();
    EXPECT_EQ(world.leftovers().size(), 1U);
    EXPECT_EQ(world.start(), StartResult::Ready);
    EXPECT_TRUE(world.leftovers().empty());
}

// It ended the start with a bare "InvalidFile.", before a window where one could reset came up again.
TEST(Start, TellsAnIndexThatNoPasswordOpensAndAsksOn) {
    World world;
    world.create();
    world.stop();
    const std::string path = world.data("Backup Files/Database Index");
    const std::string index = readWholeFile(path);
    const std::string sealed = readWholeFile(world.databasePath());
    for (const std::string& damaged : {index + "x", index.substr(0, index.size() - 1), std::string("x")}) {
        writeWholeFile(path, damaged);
        world.password.asked = 0;
        EXPECT_EQ(world.start(), StartResult::PasswordRefused);
        EXPECT_EQ(world.password.asked, 2);
        EXPECT_TRUE(world.password.wasDamaged);
        EXPECT_NE(world.machine.ui.transcript().find(path + " has been damaged: no password opens it."),
                  std::string::npos);
        EXPECT_EQ(readWholeFile(path), damaged);
        EXPECT_EQ(readWholeFile(world.databasePath()), sealed);
    }
    writeWholeFile(path, index);
    EXPECT_EQ(world.start(), StartResult::Ready);
    EXPECT_EQ(world.open(), store::OpenResult::Opened);
    world.stop();
    writeWholeFile(path, index + "x");
    world.machine.ui.answers = {true};
    world.password.resets = true;
    world.password.password = "a new one";
    EXPECT_EQ(world.start(), StartResult::Ready);
    EXPECT_EQ(fs::file_size(path), 0U);
    EXPECT_EQ(readWholeFile(world.databasePath()), sealed);
}

/// An installation where the moves of a change of the password were committed and could not all be carried
/// out: the index among them, and one whose place is taken.
class ResetAfterHalfACommit : public testing::Test {
  protected:
    ResetAfterHalfACommit() {
        world.create();
        fs::create_directories(taken + "/in the way");  // no file can be renamed over it
        std::vector<std::pair<crypto::TemporaryFile, std::string>> moves;
        for (const std::string& target : {taken, index}) {
            auto file = world.vault().working.createSealed(target, "123456789n");
            file.file().write(base::bytesOf(readWholeFile(index)));
            moves.emplace_back(std::move(file), target);
        }
        EXPECT_THROW(world.vault().working.commitMoves(std::move(moves)), crypto::MovesPending);
        EXPECT_TRUE(
            world.vault().working.noteDeletion(world.databasePath("gone"), world.databasePath(), true));
        world.stop();
        world.machine.ui.answers = {true};
        world.password.password = "a new one";
    }

    void expectBegunAnew() {
        fs::remove_all(taken);
        ASSERT_EQ(world.start(), StartResult::Ready);
        EXPECT_EQ(fs::file_size(index), 0U);
        EXPECT_TRUE(fs::exists(world.databasePath()));
        EXPECT_FALSE(fs::exists(taken));
        EXPECT_TRUE(world.leftovers().empty());
        EXPECT_TRUE(world.create("new"));
        EXPECT_EQ(world.start(), StartResult::Ready);
        EXPECT_EQ(world.open("new"), store::OpenResult::Opened);
        EXPECT_EQ(fs::file_size(world.data("Working Copies")), 0U);
    }

    World world;
    std::string taken = world.path("taken");
    std::string index = world.data("Backup Files/Database Index");
};

// The next start put the old index in the place of the emptied one, and refused the new password.
TEST_F(ResetAfterHalfACommit, IsNotUndoneByTheNextStart) {
    settings::Configuration configuration(world.platform.settings, world.platform.ui);
    {
        crypto::WorkingFiles working(world.platform.files, core::journalPath(world.data("")),
                                     world.platform.paths);
        ASSERT_TRUE(core::reset(world.platform, configuration, working));
    }
    expectBegunAnew();
}

TEST_F(ResetAfterHalfACommit, IsNotUndoneByTheRunThatAskedForThePassword) {
    world.password.resets = true;
    ASSERT_EQ(world.start(), StartResult::Ready);
    world.password.resets = false;
    fs::remove_all(taken);
    EXPECT_TRUE(world.create("at once"));  // whatever is pending is carried on first
    EXPECT_FALSE(fs::exists(taken));
    EXPECT_EQ(store::DatabaseIndex(world.vault()).records().size(), 1U);
    EXPECT_TRUE(world.leftovers().empty());
}

TEST(Reset, EmptiesIndexScheduleAndLogsAfterAsking) {
    World world;
    listFile(world, "a", "one");
    writeWholeFile(world.data("Permissions"), "state");
    writeWholeFile(world.data("Checking Schedule/Scheduled Checking Log File"), "log");
    store::RecentList(world.configuration(), world.vault().session)
        .opened(world.databasePath(), store::DatabaseIndex(world.vault()));
    const auto recent = [&] { return world.configuration().stored("Recent File List\\File1").value_or(""); };
    settings::Configuration configuration(world.platform.settings, world.platform.ui);
    EXPECT_FALSE(core::reset(world.platform, configuration, world.vault().working));
    EXPECT_GT(fs::file_size(world.data("Backup Files/Database Index")), 0U);
    EXPECT_NE(recent(), "");
    fs::remove(world.data("Checking Schedule/Database Checking Schedule"));
    world.machine.ui.answers = {true};
    EXPECT_TRUE(core::reset(world.platform, configuration, world.vault().working));
    EXPECT_EQ(fs::file_size(world.data("Backup Files/Database Index")), 0U);
    EXPECT_EQ(fs::file_size(world.data("Checking Schedule/Scheduled Checking Log File")), 0U);
    EXPECT_EQ(fs::file_size(world.data("Checking Schedule/Database Checking Schedule")), 0U);
    EXPECT_FALSE(fs::exists(world.data("Permissions")));
    EXPECT_EQ(recent(), "");
    // The old databases stay as files that no longer open; any password serves from now on.
    world.password.password = "a new one";
    EXPECT_EQ(world.start(), StartResult::Ready);
    EXPECT_EQ(world.open(), store::OpenResult::NotListed);
    EXPECT_TRUE(fs::exists(world.databasePath()));
}

}  // namespace
}  // namespace corvalence::test
