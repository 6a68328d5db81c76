#include "files/backup_store.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "crypto/sealed_file.h"
#include "listed_file.h"
#include "world.h"

namespace corvalence::test {
namespace {

std::string container(const World& world) {
    return world.data("Backup Files/Backup File 1");
}
std::string list(const World& world) {
    return world.data("Backup Files/Backup Index 1");
}

std::string listText(World& world) {
    const auto text = crypto::unsealText(world.machine.files, list(world), world.vault().session.key,
                                         crypto::BackupIV(list(world)), crypto::kUnsealBackupFolder);
    return std::string(text.view());
}

void writeList(World& world, const std::string& text) {
    crypto::sealFile(world.vault().working, text, list(world), world.vault().session.key,
                     crypto::BackupIV(list(world)));
}

struct Lengths {
    std::uint64_t stored;
    std::uint32_t original;
    std::optional<std::uint64_t> plain;
};

class SealedLength : public testing::TestWithParam<Lengths> {};

// A record says only the low 32 bits of a size; with the number of blocks they still give the exact length.
TEST_P(SealedLength, FollowsFromBlocksAndLowBits) {
    files::BackupIndexEntry entry;
    entry.sealed = true;
    entry.storedLength = GetParam().stored;
    entry.originalSize = GetParam().original;
    EXPECT_EQ(entry.plainLength(), GetParam().plain);
}

INSTANTIATE_TEST_SUITE_P(
    BackupIndexEntry, SealedLength,
    testing::Values(Lengths{0, 0, 0}, Lengths{16, 1, 1}, Lengths{16, 16, 16}, Lengths{16, 0, std::nullopt},
                    Lengths{32, 16, std::nullopt}, Lengths{17, 16, std::nullopt}, Lengths{0, 1, std::nullopt},
                    Lengths{4294967296, 0, 4294967296}, Lengths{4294967312, 5, 4294967301},
                    Lengths{4294967296, 4294967281U, 4294967281}, Lengths{8589934608, 16, 8589934608}));

TEST(BackupStore, KeepsTheListInTheOrderOfTheContainer) {
    World world;
    world.set("Config17", "P");
    world.write("a", "first");
    world.write("b", "");
    world.write("c", "third");
    world.create();
    world.add({"a", "b", "c"});
    EXPECT_EQ(readWholeFile(container(world)), "firstthird");
    EXPECT_EQ(listText(world), world.path("a") +
                                   "\x7FP\x7F"
                                   "5.00\x7F"
                                   "5\r\n" +
                                   world.path("b") +
                                   "\x7FP\x7F"
                                   "0.00\x7F"
                                   "0\r\n" +
                                   world.path("c") +
                                   "\x7FP\x7F"
                                   "5.00\x7F"
                                   "5\r\n");
}

TEST(BackupStore, SealsEachStretchOnItsOwn) {
    World world;
    listFile(world, "a", "top secret content");
    EXPECT_EQ(std::filesystem::file_size(container(world)), 32U);
    EXPECT_TRUE(world.leftovers("top secret").empty());
    EXPECT_EQ(listText(world), world.path("a") +
                                   "\x7FN\x7F"
                                   "32.00\x7F"
                                   "18\r\n");
}

TEST(BackupStore, FollowsTheEntryNotTheSettingWhenItRestores) {
    World world;
    world.write("sealed", "one");
    world.write("plain", "two");
    world.create();
    world.add({"sealed"});
    world.set("Config17", "P");
    world.add({"plain"});
    for (const char* setting : {"N", "P"}) {
        world.set("Config17", setting);
        world.write("sealed", "x");
        world.write("plain", "y");
        EXPECT_TRUE(world.restore("sealed").restored);
        EXPECT_TRUE(world.restore("plain").restored);
        EXPECT_EQ(world.read("sealed") + world.read("plain"), "onetwo");
    }
}

TEST(BackupStore, ReplacesAnEntryInItsPlaceWhateverItsNewLength) {
    World world;
    for (const char* name : {"a", "b", "c"})
        world.write(name, name);
    world.create();
    world.add({"a", "b", "c"});
    world.write("b", std::string(1000, 'B'));
    world.write("a", "");
    world.check({{files::Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, false});
    const std::string text = listText(world);
    EXPECT_LT(text.find(world.path("a")), text.find(world.path("b")));
    EXPECT_LT(text.find(world.path("b")), text.find(world.path("c")));
    for (const char* name : {"a", "b", "c"}) {
        const std::string content = world.read(name);
        world.write(name, "changed");
        EXPECT_TRUE(world.restore(name).restored) << name;
        EXPECT_EQ(world.read(name), content);
    }
    EXPECT_TRUE(world.leftovers().empty());
}

// "Backup File 1" was once rewritten as "Backup File 11", which is the eleventh database's own.
TEST(BackupStore, ReplacesAnEntryWhereAnotherContainersNumberBeginsAlike) {
    World world;
    listFile(world, "a", "one");
    world.set("Backup\\Backup Database Index", "10");
    world.create("eleventh");
    writeWholeFile(world.data("Backup Files/Backup File 11"), "another's");
    world.write("a", "two");
    world.check({{files::Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, false});
    world.write("a", "three");
    EXPECT_TRUE(world.restore("a").restored);
    EXPECT_EQ(world.read("a"), "two");
    EXPECT_EQ(readWholeFile(world.data("Backup Files/Backup File 11")), "another's");
}

TEST(BackupStore, FindsEntriesByTheWholePathAndTriesTheLatestFirst) {
    World world;
    world.set("Config17", "P");
    world.write("a", "long");
    world.write("ab", "longer");
    world.create();
    world.add({"ab", "a"});
    // A killed add left an entry without a record; the file was then added again.
    writeList(world, listText(world) + files::renderBackupIndexEntry(world.path("a"), false, 3, 3));
    writeWholeFile(container(world), readWholeFile(container(world)) + "new");
    world.write("a", "x");
    EXPECT_TRUE(world.restore("a").restored);
    EXPECT_EQ(world.read("a"), "long");

    // A new backup takes the place of all of them.
    world.write("a", "latest");
    world.check({{files::Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, false});
    EXPECT_EQ(readWholeFile(container(world)), "longerlatest");
    world.write("ab", "x");
    EXPECT_TRUE(world.restore("ab").restored);
    EXPECT_EQ(world.read("ab"), "longer");
}

TEST(BackupStore, CutsWhatAKilledRunAppended) {
    World world;
    world.write("a", "one");
    world.write("b", "two");
    world.create();
    world.add({"a"});
    writeWholeFile(container(world), readWholeFile(container(world)) + std::string(100, '?'));
    world.add({"b"});
    EXPECT_EQ(std::filesystem::file_size(container(world)), 32U);
    world.write("b", "x");
    EXPECT_TRUE(world.restore("b").restored);
}

TEST(BackupStore, NeverWritesADamagedBackupOverAFile) {
    World world;
    world.write("a", std::string(100, 'a'));
    world.write("b", std::string(100, 'b'));
    world.create();
    world.add({"a", "b"});
    const std::string good = readWholeFile(container(world));
    world.write("a", "mine");
    std::string flipped = good;
    flipped[20] = static_cast<char>(flipped[20] ^ 1);
    for (const std::string& bad : {flipped, good.substr(0, 50), std::string()}) {
        writeWholeFile(container(world), bad);
        EXPECT_EQ(world.restore("a").message,
                  "The backup file has also been modified!\n\nBackup file not restored.");
        EXPECT_EQ(world.read("a"), "mine");
    }
    // So does a new backup in the middle of such a container: those behind it keep their place.
    writeWholeFile(container(world), good.substr(0, 50));
    world.check({{files::Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, false});
    world.write("a", "x");
    EXPECT_TRUE(world.restore("a").restored);
    EXPECT_EQ(world.read("a"), "mine");
    // Appending to a container that is too short fills it up, so that new entries lie where the list says.
    world.write("c", "three");
    world.add({"c"});
    world.write("c", "x");
    EXPECT_TRUE(world.restore("c").restored);
    EXPECT_TRUE(world.leftovers().empty());
}

TEST(BackupStore, RefusesADamagedListAndTouchesNothing) {
    World world;
    listFile(world, "a", "one");
    const std::string good = listText(world);
    const std::string containerBefore = readWholeFile(container(world));
    world.write("a", "mine");
    for (const std::string& bad : {"garbage in front of it\r\n" + good, good + "a line that is no entry\r\n",
                                   good + world.path("x") +
                                       "\x7FN\x7F"
                                       "-16.00\x7F"
                                       "3\r\n"}) {
        writeList(world, bad);
        const auto result = world.restore("a");
        EXPECT_FALSE(result.restored);
        EXPECT_NE(result.message.find("is damaged"), std::string::npos);
        EXPECT_EQ(world.read("a"), "mine");
        world.open();
        EXPECT_THROW(files::AddPipeline(world.vault(), world.context()).addFiles({world.path("a")}, {}),
                     files::BackupDamaged);
        EXPECT_EQ(readWholeFile(container(world)), containerBefore);
    }
}

// An emptied list once cost the whole container without a word.
TEST(BackupStore, SetsAsideWhatALostListNoLongerTells) {
    World world;
    world.write("a", "one");
    world.write("b", "two");
    world.create();
    world.add({"a"});
    const std::string before = readWholeFile(container(world));
    writeWholeFile(list(world), "");
    world.add({"b"});
    EXPECT_EQ(readWholeFile(container(world) + ".old"), before);
    EXPECT_NE(world.machine.ui.transcript().find("They are kept as "), std::string::npos);
    world.write("b", "changed");
    EXPECT_TRUE(world.restore("b").restored);
}

TEST(BackupStore, MakesAMissingPairAnewAndSaysSo) {
    World world;
    world.write("a", "one");
    world.write("b", "two");
    world.create();
    world.add({"a"});
    std::filesystem::remove(container(world));
    world.write("a", "changed");
    EXPECT_EQ(world.restore("a").message, std::string(files::kBackupFileMissing));
    EXPECT_TRUE(std::filesystem::exists(container(world)));
    std::filesystem::remove(container(world));
    world.add({"b"});
    EXPECT_TRUE(world.machine.ui.saw(std::string(files::kBackupFileMissing)));
    world.write("b", "changed");
    EXPECT_TRUE(world.restore("b").restored);
}

TEST(BackupStore, TakesNoBackupsWhenTheyAreSwitchedOff) {
    World world;
    world.set("Config5", "0");
    listFile(world, "a", "one");
    EXPECT_EQ(std::filesystem::file_size(container(world)), 0U);
    world.write("a", "two");
    EXPECT_EQ(world.restore("a").message,
              world.path("a") +
                  " was not backed up. To enable restoration in future, change your settings with the "
                  "'Configuration' menu.");
}

}  // namespace
}  // namespace corvalence::test
