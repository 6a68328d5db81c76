#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "baseline_world.h"
#include "components/directory_findings.h"
#include "machine.h"

namespace corvalence::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;
using Lines = std::vector<std::string>;

class Directory : public testing::Test, public BaselineWorld {
  protected:
    Directory() : BaselineWorld(store::DatabaseKind::DirectoryStructure) {
        for (const char* name : {"a/1", "a/deep/2", "a/z", "b/3", "c", "d/4"})
            world.write(name, "x");
    }

    void recycle(const std::string& name, bool isFolder = false) {
        bin.thrownAway.push_back({native(world.path(name)), isFolder});
    }
};

TEST_F(Directory, UnchangedGivesAnEmptyReportEveryTime) {
    // The walk comes through the program's own folders as well, and meets what it writes itself.
    world.set(settings::key::kWalkRoots, world.machine.folder.path());
    world.create("files");
    world.addAll("files");
    EXPECT_THAT(create().faults, IsEmpty());
    EXPECT_TRUE(create("second").opened);
    for (int round = 0; round < 3; ++round) {
        const BaselineOutcome outcome = check();
        EXPECT_THAT(outcome.lines, IsEmpty());
        EXPECT_THAT(outcome.counts, IsEmpty());
        EXPECT_THAT(outcome.faults, IsEmpty());
    }
    world.open("base");
    EXPECT_TRUE(world.context().record.lastCheck);
    EXPECT_THAT(world.leftovers(world.path("a")), IsEmpty());
    // What others put there is told all the same.
    writeWholeFile(world.data("Databases/foreign"), "x");
    EXPECT_EQ(check().counts.at("files_added"), 1U);
}

TEST_F(Directory, TellsWhatCameAndWentInTheOrderOfTheWalk) {
    const bool hasStreams = addStream(world.path("c"), "old") && addStream(world.path("b"), "old");
    EXPECT_THAT(create().counts, testing::IsSupersetOf(
                                     std::map<std::string, std::uint64_t>{{"files", 6}, {"directories", 4}}));
    remove("a/deep");
    remove("c");
    world.write("a/new", "x");
    world.write("a/sub/5", "x");
    world.write("b/0", "x");
    Lines expected = {"A a/new", "A a/sub/5", "R a/deep/2", "A b/0", "R c", "DR a/deep/", "DA a/sub/"};
    if (hasStreams) {
        removeStream(world.path("b"), "old");
        addStream(world.path("d/4"), "new");
        expected.push_back("AR c:" + streamName("old"));
        expected.push_back("AR b/:" + streamName("old"));
        expected.push_back("AA d/4:" + streamName("new"));
    }
    const BaselineOutcome outcome = check();
    EXPECT_EQ(outcome.lines, expected);
    EXPECT_THAT(outcome.faults, IsEmpty());
    EXPECT_EQ(outcome.counts.at("files_added"), 3U);
    EXPECT_EQ(outcome.counts.at("directories_removed"), 1U);
}

TEST_F(Directory, TellsWhatWentToTheRecycleBinOnce) {
    recycle("before");
    create();
    remove("a");
    remove("c");
    recycle("a", true);  // with all that is in it
    recycle("c");
    recycle("made");
    recycle("made");
    recycle("folder", true);
    bin.thrownAway.push_back({native("/elsewhere/x"), false});
    EXPECT_EQ(check().lines,
              (Lines{"B a/1", "B a/deep/2", "B a/z", "B c", "DB a/", "DB a/deep/", "FN made", "DN folder"}));
    bin.fails = true;
    EXPECT_THAT(check().faults, testing::Contains(Pair("recycle_bin", 1)));
}

TEST_F(Directory, TakesABeginningForTheRecycledPathUnlessLinesCompareAsAWhole) {
    world.write("b/35", "x");
    create();
    remove("b/35");
    recycle("b/3");
    EXPECT_EQ(check().lines, Lines{"B b/35"});
    world.set(settings::key::kCompleteWalk, "1");
    EXPECT_EQ(check().lines, (Lines{"R b/35", "FN b/3"}));
}

TEST_F(Directory, EndsAClimbOfTenAndSaysSo) {
    const std::string deep = "a/1d/2/3/4/5/6/7/8/9/10";
    world.write(deep + "/last", "x");
    const BaselineOutcome created = create();
    // Ten listings ran out, from that folder up to "2"; a, with what stands behind, is left out.
    EXPECT_THAT(created.faults, ElementsAre(Pair("ended", 1)));
    ASSERT_EQ(created.details.size(), 1U);
    EXPECT_THAT(created.details[0], HasSubstr("3 folders and 2 files"));
    EXPECT_EQ(created.counts.at("files"), 2U);
    EXPECT_EQ(shown(created.details[0].substr(0, created.details[0].find(' '))), "a/1d/");
    world.write("d/5", "x");
    const BaselineOutcome checked = check();
    EXPECT_THAT(checked.lines, IsEmpty());
    EXPECT_EQ(checked.details, created.details);
    // A folder entered on the way up starts the count anew.
    world.write("a/1d/2/3/4/x/y", "x");
    EXPECT_THAT(check().faults, testing::Not(testing::Contains(Pair("ended", 1))));

    world.set(settings::key::kCompleteWalk, "1");
    EXPECT_THAT(create("whole").faults, IsEmpty());
    world.write("d/6", "x");
    EXPECT_EQ(check("whole").lines, Lines{"A d/6"});
}

TEST_F(Directory, CountsWhatItsMergeCannotSee) {
    world.write("b/.hidden", "x");
    create();
    world.write("b/.other", "x");
    world.write("b/2", "x");
    world.write("e/a", "x");
    world.write("e/b", "x");
    const BaselineOutcome behind = check();
    EXPECT_EQ(behind.lines, (Lines{"A b/2", "DA e/"}));
    EXPECT_THAT(behind.faults, ElementsAre(Pair("behind_end", 2)));
    remove("e");
    remove("b/2");
    remove("d");
    const BaselineOutcome left = check();
    EXPECT_EQ(left.lines, Lines{"DR d/"});
    EXPECT_THAT(left.faults, ElementsAre(Pair("left_over", 1)));
    world.write("d/4", "x");
    remove("b/3");
    remove("a/z");
    world.write("a/de", "x");  // in step with the line of a/deep/2
    const BaselineOutcome beginning = check();
    EXPECT_THAT(beginning.faults, testing::Contains(Pair("by_beginning", 1)));
}

TEST_F(Directory, CompareAsAWholeWithCompleteWalks) {
    world.set(settings::key::kCompleteWalk, "1");
    world.write(".top/x", "x");
    create();
    remove("d");
    world.write("a/de", "x");
    world.write(".top/.y", "x");
    world.write("b/33", "x");
    EXPECT_EQ(check().lines, (Lines{"A .top/.y", "A a/de", "A b/33", "DR d/", "R d/4"}));
    world.write("d/4", "x");
    world.write("e/a", "x");
    remove("b/33");
    EXPECT_EQ(check().lines, (Lines{"A .top/.y", "A a/de", "A e/a", "DA e/"}));
    EXPECT_THAT(check().faults, IsEmpty());
}

TEST_F(Directory, GoesOnWithoutAFolderThatVanishes) {
    create();
    world.open("base");
    int asked = 0;
    world.machine.ui.meanwhile = [&] {
        if (++asked == 3) remove("b");  // listed with the folder above, not entered yet
    };
    EXPECT_TRUE(components::checkDatabase(world.vault(), machine, kind, world.context()).isWhole());
    EXPECT_EQ(report(), (Lines{"R b/3", "DR b/"}));
}

TEST_F(Directory, KeepsToTheWalkRootsAndTellsWhatLiesElsewhere) {
    world.set(settings::key::kWalkRoots,
              world.path("b") + "\n" + world.path("d") + "\n" + world.path("none"));
    const BaselineOutcome created = create();
    EXPECT_EQ(created.counts.at("files"), 2U);
    EXPECT_THAT(created.faults, ElementsAre(Pair("unreadable", 1)));
    world.write("a/other", "x");
    world.write("b/0", "x");
    EXPECT_EQ(check().lines, Lines{"A b/0"});
    remove("b/0");
    world.write("d/sub/x", "x");
    create("later");
    world.set(settings::key::kWalkRoots, world.path("b"));
    EXPECT_THAT(check("later").faults, UnorderedElementsAre(Pair("elsewhere", 1), Pair("left_over", 2)));
}

TEST(RecycleFolders, AreFourNamesAtOnePlace) {
    EXPECT_TRUE(components::isInRecycleFolder("C:\\RECYCLER\\x"));
    EXPECT_TRUE(components::isInRecycleFolder("C:\\Recycled\\"));
    EXPECT_FALSE(components::isInRecycleFolder("C:\\recycler\\x"));
    EXPECT_FALSE(components::isInRecycleFolder("C:\\RECYCLER")) << "a short path";
    EXPECT_FALSE(components::isInRecycleFolder("C:\\a\\RECYCLER\\x"));
}

TEST(DirectoryFindings, DropWhatWasBothRemovedAndAdded) {
    using components::DirectoryChange;
    components::DirectoryFindings findings;
    findings.add(DirectoryChange::FileRemoved, "/a");
    findings.add(DirectoryChange::FileAdded, "/a");
    findings.add(DirectoryChange::FolderAdded, "/a");
    findings.add(DirectoryChange::FileRecycled, "/b");
    findings.add(DirectoryChange::StreamRemoved, "/c:s");
    findings.add(DirectoryChange::StreamAdded, "/c:s");
    findings.add(DirectoryChange::FileRemoved, "/d");
    corvalence::test::ScriptedUserInterface user;
    EXPECT_TRUE(findings.dropPairs(*user.openProgress({})));
    std::map<std::string_view, std::uint64_t> counts;
    for (const components::Count& count : findings.counts()) {
        if (count.count > 0) counts[count.name] = count.count;
    }
    EXPECT_THAT(counts, ElementsAre(Pair("directories_added", 1), Pair("files_recycled", 1),
                                    Pair("files_removed", 1)));
}

}  // namespace
}  // namespace corvalence::test
