#include "schedule/log_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "crypto/sealed_file.h"
#include "failure_of.h"
#include "world.h"

namespace corvalence::test {
namespace {

using schedule::LogFiles;
using schedule::LogKind;
using schedule::LogPair;
using testing::IsEmpty;

constexpr crypto::UnsealVariant kLog = {"MFRDN", crypto::EndRule::textTail()};

class Logs : public testing::Test {
  protected:
    std::string text(LogKind kind) {
        return std::string(crypto::unsealText(world.platform.files, logs().path(kind),
                                              world.vault().session.key, world.vault().session.chains.LogIV,
                                              kLog)
                               .view());
    }
    LogFiles logs() { return LogFiles(world.vault()); }
    /// A block of one check; what the log says of its end.
    std::optional<std::string> block(const std::string& text) {
        LogPair pair(world.vault(), false);
        pair.write(text);
        pair.close();
        return pair.failure();
    }

    World world;
};

TEST_F(Logs, TakeBlockAfterBlockAndGiveTheTextOfThisCheckAlone) {
    std::string all;
    for (int number = 0; number < 40; ++number) {
        LogPair pair(world.vault(), number % 2 == 0);
        const std::string line(static_cast<std::size_t>(number) * 3, 'x');
        pair.write(line + "\nDatabase: ");
        pair.write(std::to_string(number) + " checked.\n");
        const std::string expected = line + "\r\nDatabase: " + std::to_string(number) + " checked.\r\n";
        EXPECT_EQ(pair.text(), number % 2 == 0 ? expected : "");
        all += expected;
        pair.close();
        EXPECT_FALSE(pair.failure());
        ASSERT_EQ(text(LogKind::Session), all);
    }
    EXPECT_THAT(world.leftovers("Database: 7"), IsEmpty());
    std::filesystem::remove(fsPath(logs().path(LogKind::Session)));
    EXPECT_FALSE(block("anew\n"));
    EXPECT_EQ(text(LogKind::Session), "anew\r\n");
}

TEST_F(Logs, GoOnBehindABlockThatWasEndedInTheMiddle) {
    block("whole\n");
    {
        LogPair pair(world.vault(), false);
        pair.write("one\nand a line that nobody ended, of several blocks");
    }
    std::string sealed = readWholeFile(logs().path(LogKind::Session));
    writeWholeFile(logs().path(LogKind::Session), sealed.substr(0, sealed.size() - 5));
    EXPECT_FALSE(block("next\n"));
    const std::string log = text(LogKind::Session);
    EXPECT_TRUE(log.starts_with("whole\r\none\r\nand a line")) << log;
    EXPECT_TRUE(log.ends_with("\r\nnext\r\n")) << log;
}

TEST_F(Logs, AreBroughtToANewPasswordThoughTheirEndIsTorn) {
    world.create("db");
    block("whole\nand more than a block of it\n");
    const std::string sealed = readWholeFile(logs().path(LogKind::Session));
    writeWholeFile(logs().path(LogKind::Session), sealed + "torn");
    ASSERT_EQ(world.changePassword("new").result, core::PasswordChangeResult::Changed);
    EXPECT_EQ(text(LogKind::Session), "whole\r\nand more than a block of it\r\n");
}

TEST_F(Logs, TellAFullDiskAndLetTheCheckGoOn) {
    block("before\n");
    for (std::uint64_t at = 1; at < 6; ++at) {
        world.machine.faults.failAt(at, base::Cause::DiskFull, FaultPlan::Lasts::FromThere);
        LogPair pair(world.vault(), true);
        for (int line = 0; line < 100; ++line)
            pair.write("a change that was found\n");
        pair.close();
        world.machine.faults.clear();
        EXPECT_TRUE(pair.failure()) << at;
        EXPECT_EQ(pair.text().size(), 2500U);
        EXPECT_FALSE(block("after\n"));
        ASSERT_TRUE(text(LogKind::Session).starts_with("before\r\n")) << at;
        ASSERT_TRUE(text(LogKind::Session).ends_with("\r\nafter\r\n")) << at;
    }
}

TEST_F(Logs, AppendTheSessionToTheMasterOrReplaceItAndBeginAnew) {
    logs().appendSession();  // nothing to be appended
    EXPECT_EQ(text(LogKind::Master), "");
    block("one\n");
    logs().appendSession();
    block("two\n");
    logs().appendSession();
    EXPECT_EQ(text(LogKind::Master), "one\r\ntwo\r\n");
    EXPECT_EQ(text(LogKind::Session), "");
    block("three\n");
    logs().overwriteMaster();
    EXPECT_EQ(text(LogKind::Master), "three\r\n");
    EXPECT_EQ(text(LogKind::Session), "");
    std::filesystem::remove(fsPath(logs().path(LogKind::Master)));
    block("four\n");
    logs().appendSession();
    EXPECT_EQ(text(LogKind::Master), "four\r\n");
    logs().empty(LogKind::Master);
    EXPECT_EQ(text(LogKind::Master), "");
    EXPECT_THAT(world.leftovers(), IsEmpty());
}

TEST_F(Logs, HoldASessionOnceWhereverItsAppendingFails) {
    block("old\n");
    logs().appendSession();
    block("new\n");
    for (std::uint64_t at = 1;; ++at) {
        ASSERT_LT(at, 60U);
        world.machine.faults.failAt(at, base::Cause::DiskFull);
        const auto failure = failureOf([&] { logs().appendSession(); });
        world.machine.faults.clear();
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        const std::string both = text(LogKind::Master) + text(LogKind::Session);
        ASSERT_EQ(both, "old\r\nnew\r\n") << at;
        if (!failure) break;
        if (text(LogKind::Session).empty()) {
            logs().empty(LogKind::Master);
            block("old\n");
            logs().appendSession();
            block("new\n");
        }
    }
    EXPECT_THAT(world.leftovers(), IsEmpty());
}

TEST_F(Logs, AreExportedAsTheyAreButNeverOverAnOwnFile) {
    block("one\n");
    logs().exportLog(LogKind::Session, world.path("log"));
    EXPECT_EQ(world.read("log"), readWholeFile(logs().path(LogKind::Session)));
    world.create("db");
    for (const std::string& own :
         {logs().path(LogKind::Master), world.data("Backup Files/new"), world.data("settings.json"),
          world.databasePath("db"), world.databasePath("db~")})
        EXPECT_TRUE(logs().findExportFault(own)) << own;
    for (const std::string& place : {world.path("log"), world.data("Reports/log"), world.databasePath("log")})
        EXPECT_FALSE(logs().findExportFault(place)) << place;
    EXPECT_NE(causeOf([&] { logs().exportLog(LogKind::Session, world.path("none/log")); }),
              base::Cause::None);
}

// Settings that lie elsewhere were taken for a file of the user's.
TEST(LogExport, IsNeverOverTheSettings) {
    const TempFolder folder;
    World world(folder.path());
    ASSERT_EQ(world.install(), core::InstallResult::Installed);
    ASSERT_EQ(world.start(), core::StartResult::Ready);
    const std::string settings = world.platform.settings.file();
    EXPECT_FALSE(settings.starts_with(world.data("")));
    EXPECT_TRUE(LogFiles(world.vault()).findExportFault(settings));
    if (makeLink(settings, folder / "link")) {
        EXPECT_TRUE(LogFiles(world.vault()).findExportFault(folder / "link"));
    }
    EXPECT_FALSE(LogFiles(world.vault()).findExportFault(folder / "log"));
}

// The time of a block must not grow with the log.
TEST_F(Logs, TakeABlockAtTheEndOfALargeLogWithoutReadingIt) {
    std::string large(4 << 20, 'x');
    large += '\n';
    LogPair(world.vault(), false).write(large);
    world.machine.faults.failReads("Log File~", 0);
    EXPECT_TRUE(block("y\n"));  // even its last two blocks cannot be read
    world.machine.faults.clear();
    world.machine.faults.failAt(1000);
    EXPECT_FALSE(block("y\n"));
    EXPECT_LT(world.machine.faults.operations(), 10U);
}

}  // namespace
}  // namespace corvalence::test
