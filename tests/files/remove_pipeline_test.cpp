#include "files/remove_pipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "failure_of.h"
#include "world.h"

namespace corvalence::test {
namespace {

using files::RemoveReport;

/// A world with a database of four files, and one who removes from it.
class Removing : public testing::Test {
  protected:
    Removing() {
        for (const char* name : {"a.txt", "b.TXT", "sub/c.bin", "sub/d"})
            world.write(name, "content of " + std::string(name));
        world.write("sub/d", std::string(1000, 'd'));
        world.create();
        world.add({"a.txt", "b.TXT", "sub/c.bin", "sub/d"});
    }

    files::RemovePipeline pipeline(bool confirms = true) {
        world.open();
        return {world.vault(), world.context(), [this, confirms](std::uint64_t count) {
                    asked = count;
                    EXPECT_TRUE(world.leftovers().empty());  // nothing plain while the user thinks about it
                    return confirms;
                }};
    }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const auto& record : world.records()) {
            names.push_back(record.path.substr(world.path("").size()));
            std::replace(names.back().begin(), names.back().end(), '\\', '/');
        }
        return names;
    }
    std::uint64_t containerSize() {
        return std::filesystem::file_size(world.data("Backup Files/Backup File 1"));
    }
    void expectRestores(const std::string& name) {
        const std::string content = world.read(name);
        world.write(name, "spoilt");
        EXPECT_TRUE(world.restore(name).restored) << name;
        EXPECT_EQ(world.read(name), content);
    }

    World world;
    std::uint64_t asked = 0;
};

TEST_F(Removing, TakesRecordsAndTheirBackupsAndNoFile) {
    const std::uint64_t before = containerSize();
    const RemoveReport report = pipeline().removeFiles({world.path("b.TXT"), world.path("no such")});
    EXPECT_EQ(report.text, "1 file successfuly removed from the database.");
    EXPECT_EQ(names(), (std::vector<std::string>{"a.txt", "sub/c.bin", "sub/d"}));
    EXPECT_EQ(containerSize(), before - 16);
    EXPECT_EQ(world.read("b.TXT"), "content of b.TXT");
    for (const char* name : {"a.txt", "sub/c.bin", "sub/d"})
        expectRestores(name);
    EXPECT_EQ(pipeline().removeFiles({world.path("b.TXT")}).text, "No files were removed.");
    EXPECT_EQ(world.check().counts().identical, 3U);
    EXPECT_TRUE(world.leftovers().empty());
    EXPECT_EQ(world.add({"b.TXT"}).added, 1U);
    expectRestores("b.TXT");
}

TEST_F(Removing, TakesAllAndLeavesAnEmptyDatabaseThatOpens) {
    EXPECT_EQ(pipeline().removeAll().text, "4 files successfully removed from the database.");
    EXPECT_EQ(containerSize(), 0U);
    EXPECT_EQ(world.check().counts().listed, 0U);
    EXPECT_EQ(pipeline().removeAll().text, "There are no files in the database to remove.");
}

TEST_F(Removing, AsksFirstWithTheCountAndKeepsAllOnNo) {
    const RemoveReport report = pipeline(false).removeAll();
    EXPECT_EQ(asked, 4U);
    EXPECT_EQ(report.removed, 0U);
    EXPECT_EQ(names().size(), 4U);
}

TEST_F(Removing, TestsTheRecordsNotTheFiles) {
    files::Criteria criteria;
    criteria.type = files::TypeCriterion{"txt"};
    const std::string folder = world.path("");
    world.write("a.txt", std::string(5000, 'x'));
    criteria.size = files::SizeCriterion{files::SizeCriterion::Relation::SmallerThan, 100, 0};
    EXPECT_EQ(pipeline().removeMatching(folder, criteria).text,
              "2 files located in " + folder + " successfuly removed from the database.");
    EXPECT_EQ(names(), (std::vector<std::string>{"sub/c.bin", "sub/d"}));
    EXPECT_EQ(pipeline().removeMatching("*", criteria).text, "No files were removed.");
    // Any path that begins with the text is located there.
    EXPECT_EQ(pipeline().removeMatching(world.path("sub/c"), {}).removed, 1U);

    // Content is read from the file, and what is gone does not pass.
    world.write("e", "the needle");
    world.write("f", "the needle");
    world.add({"e", "f"});
    std::filesystem::remove(world.path("f"));
    files::Criteria content;
    content.contents = files::ContentsCriterion{"NEEDLE", false, false, false};
    EXPECT_EQ(pipeline().removeMatching("*", content).removed, 1U);
    EXPECT_EQ(names(), (std::vector<std::string>{"sub/d", "f"}));
}

// Cancelled behind k files, exactly these are gone, and the container holds what the rest needs.
TEST_F(Removing, KeepsTheRestWhenItIsCancelledBetweenTwoFiles) {
    auto removal = pipeline();
    // Four questions while the records are chosen, then one behind each file.
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 4 + 2;
    const RemoveReport report = removal.removeAll();
    world.machine.ui.cancelAt.reset();
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.removed, 2U);
    EXPECT_EQ(names(), (std::vector<std::string>{"sub/c.bin", "sub/d"}));
    EXPECT_EQ(containerSize(), 32U + 1008U);
    expectRestores("sub/c.bin");
    expectRestores("sub/d");
}

TEST_F(Removing, ChangesNothingWhereTheListOfBackupsIsDamaged) {
    const std::string list = world.data("Backup Files/Backup Index 1");
    const std::string sealed(64, 'x');  // unseals to no list, whatever the folder's name
    std::ofstream(list, std::ios::binary) << sealed;
    const std::string database = readWholeFile(world.databasePath());
    EXPECT_EQ(causeOf([&] { pipeline().removeAll(); }), base::Cause::InvalidFile);
    EXPECT_EQ(readWholeFile(world.databasePath()), database);
    EXPECT_EQ(readWholeFile(list), sealed);
    // Without backups the records can go all the same.
    world.set("Config5", "0");
    EXPECT_EQ(pipeline().removeAll().removed, 4U);
}

TEST_F(Removing, LeavesTheBackupsAloneWhereTheyAreTurnedOff) {
    const std::uint64_t before = containerSize();
    world.set("Config5", "0");
    EXPECT_EQ(pipeline().removeAll().removed, 4U);
    EXPECT_EQ(containerSize(), before);
}

}  // namespace
}  // namespace corvalence::test
