#include "files/restore.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "listed_file.h"
#include "short_folder.h"
#include "world.h"

namespace corvalence::test {
namespace {

using files::RestoreChoice;
namespace fs = std::filesystem;

bool isOneVolume(World& world, const std::string& a, const std::string& b) {
    platform::FileSystem& files = world.machine.system.files;
    return files.status(a, platform::Follow::Yes)->identity.volume ==
           files.status(b, platform::Follow::Yes)->identity.volume;
}

TEST(FileRestore, PutsTheContentBackAndTheReadOnlyBitAsRecorded) {
    World world;
    const std::string path = world.write("a", "one");
    world.write("b", "one");
    setReadOnly(path, true);
    world.create();
    world.add({"a", "b"});
    setReadOnly(path, false);
    for (const char* name : {"a", "b"})
        world.write(name, "two");
    setReadOnly(world.path("b"), true);
    for (const char* name : {"a", "b"}) {
        EXPECT_EQ(world.restore(name).message, world.path(name) + " successfully restored.");
        EXPECT_EQ(world.read(name), "one");
        const auto status = world.machine.system.files.status(world.path(name), platform::Follow::No);
        EXPECT_EQ(status->attributes & platform::attribute::kReadOnly, *name == 'a' ? 1U : 0U);
    }
    EXPECT_TRUE(world.leftovers().empty());
}

TEST(FileRestore, MovesTheChangedFileAndNeverOverAnOlderOne) {
    World world;
    listFile(world, "a", "one");
    for (const char* content : {"first", "second", "third"}) {
        world.write("a", content);
        EXPECT_TRUE(world.restore("a", RestoreChoice::MoveChangedFile).restored);
        EXPECT_EQ(world.read("a"), "one");
    }
    EXPECT_EQ(readWholeFile(world.data("Changed Files/a.CHANGED")), "first");
    EXPECT_EQ(readWholeFile(world.data("Changed Files/a.CHANGED1")), "second");
    EXPECT_EQ(readWholeFile(world.data("Changed Files/a.CHANGED2")), "third");
}

// A failed last step once told the failure of putting the copy back instead.
TEST(FileRestore, TellsWhyItFailedAcrossFileSystems) {
    const TempFolder other(otherVolume());
    World world;
    if (isOneVolume(world, other.path(), world.path(""))) {
        GTEST_SKIP() << "the machine has one file system only";
    }
    world.set("Changed Files Directory", other.path());
    listFile(world, "a", "one");
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
    EXPECT_EQ(other.read("a.CHANGED"), "changed");
}

// Nothing said what one can do, and every command with backups ended there.
TEST(FileRestore, SaysWhatToDoAboutADamagedListOfBackups) {
    World world;
    listFile(world, "a", "one");
    const std::string list = world.data("Backup Files/Backup Index 1");
    for (const char* damaged : {"as long as 2 sealed blocks are..", "no whole number of blocks"}) {
        writeWholeFile(list, damaged);
        const std::string told = world.restore("a").message;
        EXPECT_NE(told.find(list + " is damaged"), std::string::npos) << told;
        EXPECT_NE(told.find("move the file elsewhere"), std::string::npos) << told;
    }
    // As it says.
    fs::rename(list, world.path("elsewhere"));
    world.write("b", "two");
    EXPECT_EQ(world.add({"b"}).added, 1U);
    EXPECT_TRUE(fs::exists(world.data("Backup Files/Backup File 1.old")));
    world.write("b", "changed");
    EXPECT_TRUE(world.restore("b").restored);
    EXPECT_EQ(world.read("b"), "two");
}

// "Restoring File..." stayed where the reading of a backup failed.
TEST(FileRestore, LeavesTheStatusReadyWhereverItFails) {
    World world;
    listFile(world, "a", "one");
    world.write("a", "changed");
    std::vector<std::string>& statuses = world.machine.ui.statuses;
    std::size_t failures = 0;
    for (std::uint64_t at = 1;; ++at) {
        ASSERT_LT(at, 200U);
        const auto record = world.records().at(0);
        statuses.clear();
        world.machine.faults.failAt(at, base::Cause::AccessDenied);
        const bool restored = files::FileRestore(world.vault(), world.context())
                                  .restoreFile(record, RestoreChoice::DeleteChangedFile)
                                  .restored;
        world.machine.faults.clear();
        if (!statuses.empty()) {
            EXPECT_EQ(statuses.back(), "Ready") << at;
            failures += restored ? 0U : 1U;
        }
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        if (restored) break;
    }
    EXPECT_GT(failures, 3U);
}

TEST(FileRestore, BringsAFileBackThatIsGone) {
    World world;
    const std::string path = listFile(world, "a", "one");
    fs::remove(path);
    const auto result = world.restore("a", RestoreChoice::MoveChangedFile);
    EXPECT_TRUE(result.restored);
    EXPECT_EQ(world.read("a"), "one");
    EXPECT_TRUE(isOwnersAlone(path));
    ASSERT_EQ(result.notes.size(), 1U);
    EXPECT_NE(result.notes[0].find("was missing"), std::string::npos);
}

TEST(FileRestore, LeavesAloneWhatIsNoFileAnyMore) {
    World world;
    const std::string path = listFile(world, "a", "one");
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_EQ(world.restore("a", RestoreChoice::MoveChangedFile).message,
              "Couldn't restore " + path + " at this time.\nReason: InvalidFile.");
    EXPECT_TRUE(fs::is_directory(path));
    EXPECT_TRUE(world.leftovers().empty());
}

TEST(FileRestore, TouchesNoFileThatBearsTheCandidatesName) {
    World world;
    listFile(world, "a", "one");
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
    const std::string name = std::string(245, 'n').append("\xC3\xA4");
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
    listFile(world, "a", old);
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
