#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "baseline_world.h"
#include "failure_of.h"
#include "files/database_copy.h"
#include "store/component_index.h"
#include "store/database_index.h"

namespace corvalence::test {
namespace {

using testing::IsEmpty;

const std::vector<std::string> kFiles = {"base", "based", "basea", "baseBn"};

class DirectoryLife : public testing::Test, public BaselineWorld {
  protected:
    DirectoryLife() : BaselineWorld(store::DatabaseKind::DirectoryStructure) {
        for (int each = 0; each < 20; ++each)
            world.write("a/" + std::to_string(each), "x");
        bin.thrownAway.push_back({world.path("old"), false});
        world.write("b", "x");
    }

    std::string file(const std::string& name) const { return world.data("Databases/" + name); }
    bool has(const std::string& name) const { return std::filesystem::exists(fsPath(file(name))); }
    std::size_t databaseFiles() const {
        const std::filesystem::directory_iterator all(fsPath(world.data("Databases")));
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }
    void damage(const std::string& name) {
        std::string bytes = readWholeFile(file(name));
        if (bytes.empty()) bytes.assign(16, 'x');
        bytes[bytes.size() / 2] ^= 1;
        writeWholeFile(file(name), bytes);
    }
};

TEST_F(DirectoryLife, RefusesAFileThatIsNotItsOwnAndOffersItsBackup) {
    create();
    check();
    for (const std::string& each : kFiles) {
        for (const bool isGone : {false, true}) {
            isGone ? void(std::filesystem::remove(fsPath(file(each)))) : damage(each);
            EXPECT_EQ(
                store::DatabaseOpening(world.vault()).state(world.context().record),
                isGone ? store::DatabaseOpening::State::Missing : store::DatabaseOpening::State::Changed);
            EXPECT_FALSE(check().opened) << each;
            world.machine.ui.answers = {true};
            EXPECT_TRUE(check().opened) << each;
            EXPECT_THAT(check().lines, IsEmpty());
        }
    }
    // Between the proof and the reading nobody may slip another file in.
    world.open("base");
    damage("based");
    EXPECT_THROW(components::checkDatabase(world.vault(), machine, kind, world.context()),
                 files::DatabaseChanged);
    damage("based~");
    world.machine.ui.answers = {true};
    EXPECT_FALSE(check().opened);
    EXPECT_TRUE(world.machine.ui.saw("Database  " + file("based") + " could not be opened. \n\nReason: " +
                                     file("based~") + " has also been changed!"));
}

TEST_F(DirectoryLife, GoesAlongWithAChangeOfThePassword) {
    create();
    world.write("a/0new", "x");
    const std::vector<std::string> expected = {"A a/0new"};
    EXPECT_EQ(check().lines, expected);
    EXPECT_EQ(world.changePassword("another", {}).result, core::PasswordChangeResult::Changed);
    EXPECT_EQ(report(), expected);
    EXPECT_EQ(check().lines, expected);
    for (const std::string& each : kFiles) {
        damage(each);
        world.machine.ui.answers = {true};
        EXPECT_EQ(check().lines, expected) << each;
    }
    world.password.password = "another";
    ASSERT_EQ(world.start(), core::StartResult::Ready);
    EXPECT_EQ(check().lines, expected);
}

TEST_F(DirectoryLife, IsDeletedWithAllItsFiles) {
    create();
    EXPECT_EQ(databaseFiles(), 2 * kFiles.size());
    world.open("base");
    NobodyListens nobody;
    world.machine.ui.answers = {true};
    EXPECT_EQ(store::deleteDatabase(world.vault(), world.context(), nobody), store::DeletionResult::Deleted);
    EXPECT_EQ(databaseFiles(), 0U);
    EXPECT_THAT(store::ComponentIndex(world.vault()).records(), IsEmpty());
    EXPECT_TRUE(world.machine.ui.saw(file("base") + ", and its backups successfully deleted."));
}

TEST_F(DirectoryLife, TakesNoNameThatWouldCollide) {
    writeWholeFile(file("basea"), "the user's");
    EXPECT_FALSE(create().opened);
    EXPECT_EQ(databaseFiles(), 1U);
    EXPECT_EQ(readWholeFile(file("basea")), "the user's");
    ASSERT_TRUE(create("other").opened);
    EXPECT_FALSE(create("otherd").opened);
    EXPECT_FALSE(world.create("otherBn"));
    EXPECT_TRUE(world.machine.ui.saw("The file " + file("otherd") + " already exists."));
    ASSERT_TRUE(world.create("numbered"));
    EXPECT_FALSE(create("numberedP").opened);
    EXPECT_TRUE(world.machine.ui.saw(file("numberedP") + "  is the name of an existing database."));
    world.set(settings::key::kBackupSuffix, "d");
    EXPECT_FALSE(create("again").opened);
    EXPECT_FALSE(has("again"));
}

TEST_F(DirectoryLife, TellsAnEmptyDatabase) {
    remove("a");
    remove("b");
    create();
    world.write("b", "x");
    EXPECT_THAT(check().lines, IsEmpty());
    EXPECT_TRUE(world.machine.ui.saw(file("base") + " is an empty database."));
}

TEST_F(DirectoryLife, LeavesNothingOfACancelledCreationAndKeepsTheReportOfACheck) {
    for (const std::uint64_t at : {1U, 2U, 9U, 23U}) {
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + at;
        const BaselineOutcome outcome = create();
        EXPECT_TRUE(outcome.cancelled && !outcome.opened) << at;
        EXPECT_EQ(databaseFiles(), 0U);
        EXPECT_THAT(store::DatabaseIndex(world.vault()).records(), IsEmpty());
    }
    world.machine.ui.cancelAt.reset();
    create();
    world.write("a/0new", "x");
    const std::vector<std::string> report = check().lines;
    EXPECT_EQ(report, std::vector<std::string>{"A a/0new"});
    world.write("a/1new", "x");
    for (const std::uint64_t at : {2U, 12U, 25U}) {
        world.open("base");
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + at;
        EXPECT_TRUE(components::checkDatabase(world.vault(), machine, kind, world.context()).cancelled);
        world.machine.ui.cancelAt.reset();
        EXPECT_EQ(this->report(), report);
    }
    EXPECT_THAT(world.leftovers(world.path("a")), IsEmpty());
}

// The steps behind the walk went on to their end, however much there was.
TEST_F(DirectoryLife, AsksForEveryLineOfItsLastStepsWhetherToGoOn) {
    constexpr std::uint64_t kLines = 200;
    create();
    world.set(settings::key::kCompleteWalk, "1");
    world.machine.volumes.withLists = false;
    for (std::uint64_t each = 0; each < kLines; ++each)
        bin.thrownAway.push_back({world.path("thrown" + std::to_string(each)), false});
    auto questions = questionsOfACheck();
    EXPECT_EQ(report().size(), kLines);
    EXPECT_GE(questions["Checking For Files Created Then Moved To Recycle Bin Between Database Checks..."],
              kLines);
    EXPECT_GE(questions["Adjusting For FAT32 Files..."], 2 * kLines);  // two passes, and the writing
}

// A check that was ended by force left nothing but its header in the log.
TEST_F(DirectoryLife, TellsALogWhatItFindsAsItFindsIt) {
    create();
    world.write("a/0new", "x");
    world.write("b", "x");
    remove("a/11");
    const std::vector<std::string> whole = {world.path("a/0new") +
                                                "\x7F"
                                                "A\x7F",
                                            world.path("a/11") + "\x7FR\x7F"};
    const std::uint64_t before = world.machine.ui.cancelQuestions();
    EXPECT_EQ(toldUntil(UINT64_MAX), whole);
    const std::uint64_t questions = world.machine.ui.cancelQuestions() - before;
    // The walk asks for every file, and comes by eight more.
    EXPECT_EQ(toldUntil(questions - 8), whole);
    // What may be taken back is told at the end.
    world.machine.volumes.withLists = false;
    EXPECT_THAT(toldUntil(questions - 8), IsEmpty());
    EXPECT_EQ(toldUntil(UINT64_MAX), whole);
}

TEST_F(DirectoryLife, IsThereWholeOrNotAtAllWhereverItsCreationFails) {
    world.machine.faults.failAt(UINT64_MAX);
    create("probe");
    const std::uint64_t operations = world.machine.faults.operations();
    ASSERT_GT(operations, 40U);
    for (std::uint64_t at = 1; at <= operations; ++at) {
        const std::string name = "base" + std::to_string(at);
        world.machine.faults.failAt(at);
        failureOf([&] { create(name); });
        world.machine.faults.clear();
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        const auto record = store::DatabaseIndex(world.vault()).findExact(file(name));
        if (record) {
            EXPECT_THAT(check(name).lines, IsEmpty()) << at;
            EXPECT_TRUE(has(name + "Bn~")) << at;
        }
        for (const char* suffix : {"", "d", "a", "Bn", "~", "d~", "a~", "Bn~"})
            EXPECT_EQ(has(name + suffix), record.has_value()) << at << suffix;
        ASSERT_THAT(world.leftovers(world.path("a")), IsEmpty()) << at;
    }
}

TEST_F(DirectoryLife, KeepsTheOldReportWhereverACheckFails) {
    create();
    world.write("a/0new", "x");
    check();
    world.machine.faults.failAt(UINT64_MAX);
    check();
    const std::uint64_t operations = world.machine.faults.operations();
    for (std::uint64_t at = 1; at <= operations; ++at) {
        world.machine.faults.failAt(at);
        failureOf([&] { check(); });
        world.machine.faults.clear();
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        EXPECT_EQ(report(), std::vector<std::string>{"A a/0new"}) << at;
        ASSERT_THAT(world.leftovers(world.path("a")), IsEmpty()) << at;
    }
}

}  // namespace
}  // namespace corvalence::test
