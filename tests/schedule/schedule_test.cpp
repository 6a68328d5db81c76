#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "crypto/sealed_file.h"
#include "failure_of.h"
#include "schedule/schedule_dialog.h"
#include "store/component_index.h"
#include "store/database_index.h"
#include "world.h"

namespace corvalence::test {
namespace {

using schedule::AddToSchedule;
using schedule::CheckInterval;
using schedule::CheckReaction;
using schedule::ScheduleDialog;
using schedule::ScheduleList;
using schedule::ScheduleSettings;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Schedule : public testing::Test {
  protected:
    void seal(std::string_view text) {
        crypto::sealFile(world.vault().working, text, list().path(), world.vault().session.key,
                         world.vault().session.chains.ScheduleIV);
    }
    std::string text() {
        return std::string(crypto::unsealText(world.platform.files, list().path(), world.vault().session.key,
                                              world.vault().session.chains.ScheduleIV,
                                              crypto::kUnsealSchedule)
                               .view());
    }
    ScheduleList list() { return ScheduleList(world.vault()); }
    ScheduleDialog dialog() { return ScheduleDialog(world.vault()); }
    std::string path(std::string_view name) { return world.databasePath(name); }

    World world;
};

TEST_F(Schedule, KeepsDatabasesInTheOrderOfAddingOnceEach) {
    EXPECT_TRUE(list().add("/a"));
    EXPECT_TRUE(list().add("/b"));
    const std::string sealed = readWholeFile(list().path());
    EXPECT_FALSE(list().add("/a"));
    EXPECT_EQ(readWholeFile(list().path()), sealed);
    EXPECT_EQ(text(), "/a\x7F\r\n/b\x7F\r\n");
    EXPECT_EQ(causeOf([&] { list().add("/" + std::string(260, 'x')); }), base::Cause::BadPath);
    EXPECT_THAT(list().remove("/c"), IsEmpty());
    EXPECT_THAT(list().remove("/a"), ElementsAre("/a"));
    EXPECT_THAT(list().read().databases, ElementsAre("/b"));
}

TEST_F(Schedule, TakesLongerPathsWithTheSameBeginningOutAndTellsEach) {
    seal(
        "/a\x7F\r\n/ab\x7F"
        "60\x7FN\r\n/b\x7F\r\n/a without an end\r\n");
    EXPECT_THAT(list().remove("/a"), ElementsAre("/a", "/ab"));
    EXPECT_EQ(
        text(),
        "/b\x7F\r\n/a without an end\r\n");  // a line without a separator names nothing and is no database's
}

TEST_F(Schedule, TellsDamagedLinesAndKeepsThemUntilTheyAreDropped) {
    const std::string longLine = "/long\x7F" + std::string(700, '9') + "\r\n";
    seal("no record here\r\n/a\x7F\r\n\x01/\x7F\r\n" + longLine +
         "\x7F"
         "x\r\n/last/of/all/of/them\x7F"
         "5\r\n");
    const auto content = list().read();
    EXPECT_THAT(content.databases, ElementsAre("/a", "/long", "/last/of/all/of/them"));
    EXPECT_THAT(content.damaged, ElementsAre("no record here", "\x01/\x7F",
                                             "\x7F"
                                             "x"));
    EXPECT_TRUE(list().add("/b"));
    EXPECT_EQ(text(), "no record here\r\n/a\x7F\r\n\x01/\x7F\r\n" + longLine +
                          "\x7F"
                          "x\r\n/last/of/all/of/them\x7F"
                          "5\r\n/b\x7F\r\n");
    EXPECT_EQ(dialog().dropDamaged().size(), 3U);
    EXPECT_EQ(text(), "/a\x7F\r\n" + longLine +
                          "/last/of/all/of/them\x7F"
                          "5\r\n/b\x7F\r\n");
    // A flipped byte spoils its block and one letter of the next, and the other lines go on being checked.
    seal("/first\x7F\r\n/second/in/another/block\x7F\r\n/third/again/in/another\x7F\r\n");
    std::string sealed = readWholeFile(list().path());
    sealed[17] = static_cast<char>(sealed[17] ^ 1);
    writeWholeFile(list().path(), sealed);
    EXPECT_EQ(list().read().databases.front(), "/first");
    EXPECT_EQ(list().read().databases.back(), "/third/again/in/another");
}

TEST_F(Schedule, ReadsWhatATornFileHoldsAndSealsItAnewOnlyWhenToldTo) {
    seal("/a\x7F\r\n/b/c/d/e/f/g/h\x7F\r\n");
    const std::string sealed = readWholeFile(list().path());
    writeWholeFile(list().path(), sealed.substr(0, 17));
    EXPECT_TRUE(list().read().isTorn);
    EXPECT_TRUE(dialog().isTorn());
    EXPECT_THAT(list().read().databases, ElementsAre("/a"));
    EXPECT_EQ(causeOf([&] { list().add("/c"); }), base::Cause::InvalidFile);
    EXPECT_EQ(causeOf([&] { list().remove("/a"); }), base::Cause::InvalidFile);
    EXPECT_EQ(readWholeFile(list().path()), sealed.substr(0, 17));
    list().dropDamaged();
    EXPECT_FALSE(list().read().isDamaged());
    std::filesystem::remove(fsPath(list().path()));
    EXPECT_THROW(list().read(), crypto::RequiredFileMissing);
    list().databaseDeleted("/a");
    EXPECT_TRUE(dialog().isMissing());
    EXPECT_TRUE(list().add("/d"));
    EXPECT_THAT(list().read().databases, ElementsAre("/d"));
}

TEST_F(Schedule, IsTheOldOrTheNewListWhereverAnAdditionFails) {
    list().add("/a");
    for (std::uint64_t at = 1;; ++at) {
        ASSERT_LT(at, 50U);
        world.machine.faults.failAt(at);
        const auto failure = failureOf([&] { list().add("/b"); });
        world.machine.faults.clear();
        if (!failure) break;
        ASSERT_EQ(text(), "/a\x7F\r\n");
        ASSERT_THAT(world.leftovers(), IsEmpty());
    }
    EXPECT_THAT(list().read().databases, ElementsAre("/a", "/b"));
}

TEST_F(Schedule, PutsADatabaseWithATimeOfItsOwnInThePlaceOfItsOldLines) {
    seal(
        "/a\x7F\r\n skipped\x7F\r\n/ab\x7F"
        "9\x7FP\r\n/b\x7F\r\n");
    schedule::scheduleDatabase(world.vault(), "/a", {1, 0, 5}, CheckReaction::Continuous);
    EXPECT_EQ(text(),
              "/b\x7F\r\n/a\x7F"
              "3605\x7FN\r\n");
    EXPECT_THAT(list().read().databases, ElementsAre("/b", "/a"));
}

TEST_F(Schedule, DialogAddsOnlyDatabasesOfTheIndexAndSaysWhyNot) {
    world.write("f", "one");
    world.create("db");
    world.create("empty");
    world.add({"f"});
    auto shown = dialog();
    EXPECT_THAT(shown.entries(), ElementsAre(path("db"), path("empty")));
    EXPECT_EQ(shown.add(""), AddToSchedule::NothingEntered);
    EXPECT_EQ(shown.add("x"), AddToSchedule::NotValid);
    EXPECT_EQ(shown.add(path("empty")), AddToSchedule::EmptyDatabase);
    EXPECT_EQ(shown.add(path("db")), AddToSchedule::Added);
    EXPECT_EQ(shown.add(path("db")), AddToSchedule::Listed);
    EXPECT_EQ(world.machine.ui.transcript(),
              "x is not a valid database. To show all valid databases use the drop down box.\n" +
                  path("empty") + " is an empty database.\n" + path("db") +
                  " previously listed in the schedule.\n");
    EXPECT_EQ(world.machine.ui.messages[0].icon, platform::Icon::Stop);
    EXPECT_EQ(world.machine.ui.messages[1].icon, platform::Icon::Information);
    ASSERT_EQ(shown.rows().size(), 1U);
    EXPECT_EQ(shown.rows()[0].name, "db");
    EXPECT_EQ(shown.rows()[0].location, path("db"));
}

TEST_F(Schedule, DialogTellsTheLastCheckByTheIndex) {
    world.write("f", "one");
    world.create("db");
    world.add({"f"});
    list().add(path("db"));
    list().add(path("gone"));
    const auto lastChecks = [&] {
        std::vector<std::string> texts;
        const auto shown = dialog();
        for (const schedule::ScheduleRow& row : shown.rows())
            texts.push_back(row.lastCheck);
        return texts;
    };
    EXPECT_THAT(lastChecks(), ElementsAre("Unchecked", "Unchecked"));
    world.check();
    EXPECT_THAT(lastChecks(), ElementsAre("12:30:05   29.2.2024", "Unchecked"));
}

TEST_F(Schedule, DialogRemovesTheSelectedRowsAndWhatBeginsLikeThem) {
    auto shown = dialog();
    EXPECT_THAT(shown.remove({}), IsEmpty());
    EXPECT_TRUE(world.machine.ui.saw("Select a database from the list first."));
    for (const char* name : {"/a", "/b", "/ab", "/c"})
        list().add(name);
    auto again = dialog();
    EXPECT_THAT(again.remove({0, 2, 3}), ElementsAre("/a", "/ab", "/c"));
    ASSERT_EQ(again.rows().size(), 1U);
    EXPECT_EQ(again.rows()[0].location, "/b");
}

TEST_F(Schedule, DialogSaysThatOfACompleteSystemTheFilesAreChecked) {
    world.write("f", "one");
    world.create("db");
    world.add({"f"});
    store::ComponentIndex(world.vault()).put({{path("db") + "R", std::string(32, '0')}});
    EXPECT_EQ(dialog().add(path("db")), AddToSchedule::Added);
    EXPECT_TRUE(world.machine.ui.saw(
        path("db") + " is a Complete System database. The schedule checks its File Contents."));
}

TEST_F(Schedule, DialogStoresIntervalAndReaction) {
    auto shown = dialog();
    EXPECT_EQ(shown.settings.reaction, CheckReaction::Continuous);
    EXPECT_FALSE(shown.settings.startsTimer());
    shown.settings.interval = {24, 59, 59};
    shown.settings.autoRestore = true;
    shown.settings.movesChanged = false;
    EXPECT_TRUE(shown.settings.canChooseChanged());
    shown.settings.reaction = CheckReaction::Standard;
    EXPECT_FALSE(shown.settings.canChooseChanged());
    EXPECT_TRUE(shown.store());
    for (const auto& [key, text] : std::vector<std::pair<std::string, std::string>>{{"Config8", "24"},
                                                                                    {"Config9", "59"},
                                                                                    {"Config10", "59"},
                                                                                    {"Config11", "P"},
                                                                                    {"Config28", "0"},
                                                                                    {"Config29", "0"}})
        EXPECT_EQ(world.configuration().stored(key), text) << key;
    const auto read = ScheduleSettings::read(world.configuration());
    EXPECT_EQ(read.interval, (CheckInterval{24, 59, 59}));
    EXPECT_EQ(read.interval.total(), std::chrono::seconds(89999));
    EXPECT_TRUE(read.startsTimer());
    shown.settings.interval = {25, 0, 0};
    EXPECT_FALSE(shown.store());
    EXPECT_EQ(world.configuration().stored("Config8"), "24");
    // Texts of another hand.
    world.set("Config8", "25");
    world.set("Config11", "x");
    world.set("Config28", "7");
    const auto odd = ScheduleSettings::read(world.configuration());
    EXPECT_EQ(odd.interval.hours, 0);
    EXPECT_EQ(odd.reaction, CheckReaction::Standard);
    EXPECT_FALSE(odd.startsTimer());
    EXPECT_FALSE(odd.autoRestore);
}

TEST(CheckInterval, IsReadAndWrittenAsAClockShowsIt) {
    for (const char* text : {"00:00:00", "01:02:03", "24:59:59"})
        EXPECT_EQ(CheckInterval::parse(text).value().text(), text);
    EXPECT_EQ(CheckInterval::parse("1:2:3"), (CheckInterval{1, 2, 3}));
    for (const char* text : {"", "1", "1:2", ":2:3", "25:00:00", "0:60:0", "0:0:60", "-1:0:0", "1:2:3:4",
                             "a:b:c", "001:0:0", "1: 2:3"})
        EXPECT_FALSE(CheckInterval::parse(text)) << text;
}

}  // namespace
}  // namespace corvalence::test
