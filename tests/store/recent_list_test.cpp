#include "store/recent_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "world.h"

namespace corvalence::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class RecentList : public testing::Test {
  protected:
    RecentList() {
        for (int i = 0; i < 12; ++i)
            EXPECT_TRUE(world.create(name(i)));
    }
    /// One of them has letters that no sealed string gives back.
    static std::string name(int i) {
        return i == 3 ? "B\xC3\xBC"
                        "cher"
                      : "db-" + std::to_string(i);
    }
    void open(int i) {
        store::RecentList(world.configuration(), world.vault().session)
            .opened(world.databasePath(name(i)), store::DatabaseIndex(world.vault()));
    }
    std::string shown() {
        std::string names;
        for (const std::string& path : store::RecentList(world.configuration(), world.vault().session)
                                           .paths(store::DatabaseIndex(world.vault()).records())) {
            for (int i = 0; i < 12; ++i)
                names += path == world.databasePath(name(i)) ? std::to_string(i) + " " : "";
        }
        return names;
    }
    std::string& text(int place) {
        return world.machine.settings
            .texts["Software\\Corvalence\\Recent File List\\File" + std::to_string(place)];
    }

    World world;
};

TEST_F(RecentList, HoldsTheLatestTenInTheirOrder) {
    for (int i = 0; i < 12; ++i)
        open(i);
    EXPECT_EQ(shown(), "11 10 9 8 7 6 5 4 3 2 ");
    open(8);
    EXPECT_EQ(shown(), "8 11 10 9 7 6 5 4 3 2 ");
    // Nothing tells in plain which they are, and nothing that settings could not hold is stored.
    for (int place = 1; place <= 10; ++place) {
        EXPECT_EQ(text(place).front(), '\\');
        EXPECT_EQ(text(place).find("db-"), std::string::npos);
        EXPECT_EQ(text(place).find('\0'), std::string::npos);
    }
    store::RecentList(world.configuration(), world.vault().session)
        .databaseDeleted(world.databasePath(name(3)));
    EXPECT_EQ(shown(), "8 11 10 9 7 6 5 4 2 ");
    world.password.password = "another one";
    store::RecentList::empty(world.configuration());
    EXPECT_EQ(shown(), "");
}

// Each text costs a writing of all settings.
TEST_F(RecentList, IsWrittenOnlyWhereItChanges) {
    for (int i = 0; i < 3; ++i)
        open(i);
    world.machine.settings.refusesWriting = true;
    const auto messages = world.machine.ui.messages.size();
    open(2);
    open(1);
    EXPECT_EQ(world.machine.ui.messages.size(), messages);
    EXPECT_EQ(shown(), "2 1 0 ");
}

TEST_F(RecentList, IsAsLongAsTheSettingsWant) {
    for (int i = 0; i < 6; ++i)
        open(i);
    world.set("Config6", "2");
    EXPECT_EQ(shown(), "5 4 ");
    open(0);
    EXPECT_EQ(text(3), "");
    world.set("Config6", "11");
    open(1);
    EXPECT_EQ(shown(), "");
    world.set("Config6", "10");
    EXPECT_EQ(shown(), "0 5 ");
    world.set("Config7", "0");
    open(3);
    EXPECT_EQ(shown(), "");
    store::RecentList::cut(world.configuration());
    world.set("Config7", "1");
    EXPECT_EQ(shown(), "");
}

TEST_F(RecentList, PassesOverWhatMeansNoDatabase) {
    open(0);
    open(1);
    text(4) = text(1);
    text(3) = "\\nonsense";
    text(1) = "";
    EXPECT_EQ(shown(), "0 1 ");
    open(2);
    EXPECT_EQ(shown(), "2 0 1 ");
    EXPECT_EQ(text(4), "");
}

}  // namespace
}  // namespace corvalence::test
