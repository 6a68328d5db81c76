#include "files/restore.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>

#include "short_folder.h"
#include "world.h"

namespace corvalence::test {
namespace {

using files::RestoreChoice;
namespace fs = std::filesystem;

struct stat statusOf(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

TEST(FileRestore, PutsTheContentBackAndKeepsOwnerModeAndAttributes) {
    World world;
    const std::string path = world.write("a", "one");
    world.create();
    world.add({"a"});
    world.write("a", "two");
    chmod(path.c_str(), 04751);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(path.c_str(), 1234, 4321), 0);
        chmod(path.c_str(), 04751);
    }
    const bool hasAttributes = setxattr(path.c_str(), "user.origin", "here", 4, 0) == 0;

    const auto result = world.restore("a");
    EXPECT_EQ(result.message, path + " successfully restored.");
    EXPECT_EQ(world.read("a"), "one");
    const struct stat now = statusOf(path);
    EXPECT_EQ(now.st_mode & 07777, 04751U);
    if (geteuid() == 0) {
        EXPECT_EQ(now.st_uid, 1234U);
        EXPECT_EQ(now.st_gid, 4321U);
    }
    if (hasAttributes) {
        char value[8] = {};
        EXPECT_EQ(getxattr(path.c_str(), "user.origin", value, sizeof value), 4);
    }
    EXPECT_TRUE(world.leftovers().empty());
    EXPECT_TRUE(fs::is_empty(world.data("Changed Files")));
}

TEST(FileRestore, SetsTheOwnersWriteBitAsRecorded) {
    World world;
    const std::string path = world.write("a", "one");
    chmod(path.c_str(), 0444);
    world.create();
    world.add({"a"});
    chmod(path.c_str(), 0664);
    world.write("a", "two");
    world.restore("a");
    EXPECT_EQ(statusOf(path).st_mode & 07777, 0464U);
}

TEST(FileRestore, MovesTheChangedFileAndNeverOverAnOlderOne) {
    World world;
    world.write("a", "one");
    world.create();
    world.add({"a"});
    for (const char* content : {"first", "second", "third"}) {
        world.write("a", content);
        EXPECT_TRUE(world.restore("a", RestoreChoice::MoveChangedFile).restored);
        EXPECT_EQ(world.read("a"), "one");
    }
    EXPECT_EQ(readWholeFile(world.data("Changed Files/a.CHANGED")), "first");
    EXPECT_EQ(readWholeFile(world.data("Changed Files/a.CHANGED1")), "second");
    EXPECT_EQ(readWholeFile(world.data("Changed Files/a.CHANGED2")), "third");
}

TEST(FileRestore, CopiesTheChangedFileAcrossFileSystems) {
    const std::string other = "/dev/shm/corvalence-test-" + std::to_string(getpid());
    World world;
    if (statusOf("/dev/shm").st_dev == statusOf(world.path("")).st_dev) {
        GTEST_SKIP() << "the machine has one file system only";
    }
    fs::create_directory(other);
    world.set("Changed Files Directory", other + "/");
    world.write("a", "one");
    world.create();
    world.add({"a"});
    world.write("a", "changed");
    EXPECT_TRUE(world.restore("a", RestoreChoice::MoveChangedFile).restored);
    EXPECT_EQ(readWholeFile(other + "/a.CHANGED"), "changed");
    EXPECT_EQ(world.read("a"), "one");
    fs::remove_all(other);
}

// A failed last step once told the failure of putting the copy back instead.
TEST(FileRestore, TellsWhyItFailedAcrossFileSystems) {
    const TempFolder other(quickFolder());
    World world;
    if (statusOf(other.path()).st_dev == statusOf(world.path("")).st_dev) {
        GTEST_SKIP() << "the machine has one file system only";
    }
    world.set("Changed Files Directory", other.path());
    world.write("a", "one");
    world.create();
    world.add({"a"});
    world.write("a", "changed");
    files::RestoreResult result;
    for (std::uint64_t at = 1; !result.restored; ++at) {
        ASSERT_LT(at, 200U);
        const auto record = world.records().at(0);
        world.machine.faults.failAt(at, base::Cause::AccessDenied);
        result = files::FileRestore(world.vault(), world.context())
                     .restoreFile(record, RestoreChoice::MoveChangedFile);
        world.machine.faults.clear();
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        if (result.restored) break;
        EXPECT_NE(result.message.find("AccessDenied."), std::string::npos) << at << ": " << result.message;
        EXPECT_EQ(world.read("a"), "changed") << at;
        EXPECT_TRUE(result.movedTo.empty() || other.has("a.CHANGED")) << at;
    }
    EXPECT_EQ(world.read("a"), "one");
}

TEST(FileRestore, BringsAFileBackThatIsGone) {
    World world;
    const std::string path = world.write("a", "one");
    world.create();
    world.add({"a"});
    fs::remove(path);
    const auto result = world.restore("a", RestoreChoice::MoveChangedFile);
    EXPECT_TRUE(result.restored);
    EXPECT_EQ(world.read("a"), "one");
    EXPECT_EQ(statusOf(path).st_mode & 07777, 0600U);
    ASSERT_EQ(result.notes.size(), 1U);
    EXPECT_NE(result.notes[0].find("was missing"), std::string::npos);
}

TEST(FileRestore, LeavesAloneWhatIsNoFileAnyMore) {
    World world;
    const std::string path = world.write("a", "one");
    world.create();
    world.add({"a"});
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_EQ(world.restore("a", RestoreChoice::MoveChangedFile).message,
              "Couldn't restore " + path + " at this time.\nReason: InvalidFile.");
    EXPECT_TRUE(fs::is_directory(path));
    EXPECT_TRUE(world.leftovers().empty());
}

TEST(FileRestore, WritesThroughNoLinkOfAStranger) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the administrator can make a link that belongs to somebody else";
    World world;
    world.write("real/a", "one");
    fs::create_directory_symlink("real", world.path("way"));
    world.create();
    world.add({"way/a"});
    world.write("real/a", "two");
    EXPECT_TRUE(world.restore("way/a").restored);  // the administrator's own link
    world.write("real/a", "two");
    ASSERT_EQ(lchown(world.path("way").c_str(), 1234, 1234), 0);
    const auto result = world.restore("way/a");
    EXPECT_FALSE(result.restored);
    EXPECT_EQ(result.message.substr(0, 16), "Couldn't restore");
    EXPECT_EQ(world.read("real/a"), "two");
}

TEST(FileRestore, TouchesNoFileThatBearsTheCandidatesName) {
    World world;
    world.write("a", "one");
    world.create();
    world.add({"a"});
    world.write("a", "two");
    world.write("a.987654321z", "the user's own");
    const auto result = world.restore("a");
    EXPECT_FALSE(result.restored);
    EXPECT_NE(result.message.find("is in the way"), std::string::npos);
    EXPECT_EQ(world.read("a.987654321z"), "the user's own");
    EXPECT_EQ(world.read("a"), "two");
}

TEST(FileRestore, RestoresAFileWhoseNameLeavesNoRoomForASuffix) {
    const ShortFolder folder;
    const std::string name = std::string(245, 'n') + "\xC3\xA4";
    World world;
    writeWholeFile(folder / name, "one");
    world.create();
    world.add({folder / name});
    const auto record = world.records().at(0);
    for (const char* content : {"two", "three"}) {
        writeWholeFile(folder / name, content);
        EXPECT_TRUE(files::FileRestore(world.vault(), world.context())
                        .restoreFile(record, RestoreChoice::MoveChangedFile)
                        .restored);
        EXPECT_EQ(readWholeFile(folder / name), "one");
    }
    const std::string changed = world.data("Changed Files/");
    EXPECT_EQ(readWholeFile(changed + name + ".CHANGED"), "two");
    // Cut between two characters, never inside one.
    EXPECT_EQ(readWholeFile(changed + std::string(245, 'n') + ".CHANGED1"), "three");
}

// At every question for Cancel: either restored, or everything as it was.
TEST(FileRestore, IsCancelledAnywhereAndChangesNothingThen) {
    const TempFolder other(quickFolder());
    World world;
    world.set("Changed Files Directory", other.path());
    const std::string old(600'000, 'o');
    const std::string changed(600'000, 'c');
    world.write("a", old);
    world.create();
    world.add({"a"});
    world.write("a", changed);
    const auto record = world.records().at(0);
    files::RestoreResult result;
    for (std::uint64_t question = 1; !result.restored; ++question) {
        ASSERT_LT(question, 40U);
        EXPECT_EQ(world.read("a"), changed);
        EXPECT_FALSE(other.has("a.CHANGED"));
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + question;
        result = files::FileRestore(world.vault(), world.context())
                     .restoreFile(record, RestoreChoice::MoveChangedFile);
        world.machine.ui.cancelAt.reset();
        EXPECT_NE(result.cancelled, result.restored);
        EXPECT_TRUE(world.leftovers().empty());
    }
    EXPECT_EQ(world.read("a"), old);
    EXPECT_EQ(other.read("a.CHANGED"), changed);
}

}  // namespace
}  // namespace corvalence::test
