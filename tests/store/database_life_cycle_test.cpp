#include <gtest/gtest.h>

#include <filesystem>

#include "crypto/sealed_file.h"
#include "listed_file.h"
#include "schedule/schedule_list.h"
#include "short_folder.h"
#include "store/backup_database.h"
#include "store/database_creation.h"
#include "store/database_deletion.h"
#include "store/database_index.h"
#include "world.h"

namespace corvalence::test {
namespace {

using store::DeletionResult;
using store::OpenResult;
namespace fs = std::filesystem;

/// A world with a database of one file.
class OneDatabase : public testing::Test {
  protected:
    OneDatabase() { listFile(world, "a", "one"); }
    std::string backup() { return world.data("Databases/db~"); }

    World world;
};

TEST_F(OneDatabase, IsRefusedWhenOneByteChangedAndComesBackFromItsBackup) {
    flipByte(world.databasePath());
    EXPECT_EQ(world.open(), OpenResult::Refused);  // nobody answers
    const std::string& path = world.databasePath();
    EXPECT_TRUE(world.machine.ui.saw("Database  " + path + " could not be opened. \n\nReason: " + path +
                                     " has been changed!\n\nWould you like to open the backup database? "));
    world.machine.ui.answers = {true};
    EXPECT_EQ(world.open(), OpenResult::Restored);
    EXPECT_TRUE(world.machine.ui.saw(
        "The backup database is unchanged. Corvalence has restored the database from backup."));
    EXPECT_EQ(world.machine.ui.messages.back().duringWork, 0) << "there is nothing left to cancel";
    EXPECT_EQ(world.check().counts().identical, 1U);
    EXPECT_EQ(readWholeFile(world.databasePath()), readWholeFile(backup()));
}

TEST_F(OneDatabase, OpensNothingWhenTheBackupChangedAsWell) {
    flipByte(world.databasePath());
    flipByte(backup(), 7);
    world.machine.ui.answers = {true, true};
    EXPECT_EQ(world.open(), OpenResult::Refused);
    EXPECT_TRUE(world.machine.ui.saw("Database  " + world.databasePath() +
                                     " could not be opened. \n\nReason: " + backup() +
                                     " has also been changed!"));
    fs::remove(backup());
    EXPECT_EQ(world.open(), OpenResult::Refused);
}

TEST_F(OneDatabase, ComesBackWhenItIsGone) {
    fs::remove(world.databasePath());
    world.machine.ui.answers = {true};
    EXPECT_EQ(world.open(), OpenResult::Restored);
    EXPECT_EQ(world.check().counts().identical, 1U);
}

TEST_F(OneDatabase, IsRefusedAsACopyUnderAnotherName) {
    fs::copy_file(world.databasePath(), world.databasePath("copy"));
    EXPECT_EQ(world.open("copy"), OpenResult::NotListed);
    EXPECT_EQ(world.open("db~"), OpenResult::NotListed);
    EXPECT_TRUE(
        world.machine.ui.saw(world.databasePath("copy") +
                             " is either a backup database or an old database that is no longer valid."));
}

TEST_F(OneDatabase, KeepsItsBackupInAFolderOfItsOwn) {
    fs::create_directory(world.data("elsewhere"));
    world.set("Config4", "0");
    world.set("Config3", world.data("elsewhere"));
    world.set("Config1", "%");
    world.write("b", "two");
    world.add({"b"});
    EXPECT_EQ(readWholeFile(world.data("elsewhere/db%")), readWholeFile(world.databasePath()));
    world.set("Config2", "0");
    world.write("c", "three");
    world.add({"c"});
    EXPECT_NE(readWholeFile(world.data("elsewhere/db%")), readWholeFile(world.databasePath()));
}

TEST_F(OneDatabase, GoesWithItsBackupItsPairAndItsScheduleLines) {
    world.create("db2");
    schedule::ScheduleList schedule(world.vault());
    const auto& session = world.vault().session;
    const std::string other = world.databasePath("other") + "\x7F\r\n";
    // A line that is no record stays, but at the end, where a sealed block leaves such pieces behind.
    const std::string odd = "a line without a separator\r\n";
    crypto::sealFile(world.vault().working,
                     world.databasePath("DB") + "\x7F\r\n" + odd + other + "\x7Fleft\r\n", schedule.path(),
                     session.key, session.chains.ScheduleIV);
    world.open();
    world.platform.paths.ignoresCase = true;
    EXPECT_EQ(store::deleteDatabase(world.vault(), world.context(), schedule), DeletionResult::Declined);
    world.machine.ui.answers = {true};
    EXPECT_EQ(store::deleteDatabase(world.vault(), world.context(), schedule), DeletionResult::Deleted);
    for (const char* gone :
         {"Databases/db", "Databases/db~", "Backup Files/Backup File 1", "Backup Files/Backup Index 1"}) {
        EXPECT_FALSE(fs::exists(world.data(gone))) << gone;
    }
    EXPECT_EQ(crypto::unsealText(world.machine.files, schedule.path(), session.key, session.chains.ScheduleIV,
                                 crypto::kUnsealSchedule)
                  .view(),
              odd + other);
    EXPECT_EQ(world.open("db2"), OpenResult::Opened);
    EXPECT_EQ(world.open(), OpenResult::NotListed);
}

struct Refusal {
    std::string location;
    std::string name;
    std::string message;
};

TEST_F(OneDatabase, IsNotMadeTwiceOrUnderANameThatDoesNotServe) {
    const std::string databases = world.data("Databases/");
    world.write("taken", "x");
    const std::string_view forbidden = "The name of the database should not contain \\ / : * ? \" < > |";
    const std::string tooLong =
        "The name of the database plus the location for the database must total less than 260 characters.";
    const std::vector<Refusal> refusals = {
        {databases, "db", "The file " + databases + "db already exists."},
        // Look-up goes by the beginning of a line: a name that another one begins with is taken.
        {databases, "d", databases + "d  is the name of an existing database."},
        {world.path(""), "taken", "The file " + world.path("taken") + " already exists."},
        {world.data("nowhere"), "x", world.data("nowhere/") + "  is not a valid location."},
        {world.path("taken"), "x", world.path("taken/") + "  is not a valid location."},
        {databases, "a?b", std::string(forbidden)},
        {databases,
         "a\x7F"
         "b",
         std::string(forbidden)},
        {databases, "", tooLong},
        {databases, std::string(260 - databases.size(), 'n'), tooLong},
    };
    for (const Refusal& refusal : refusals) {
        store::CreationRequest request;
        request.location = refusal.location;
        request.name = refusal.name;
        EXPECT_FALSE(store::DatabaseCreation(world.vault()).create(request)) << refusal.name;
        EXPECT_EQ(world.machine.ui.messages.back().text, refusal.message);
    }
    // A folder with a separator in its name once made the whole index unreadable.
    fs::create_directory(world.path("odd\x7F"));
    store::CreationRequest odd;
    odd.location = world.path("odd\x7F");
    odd.name = "x";
    EXPECT_FALSE(store::DatabaseCreation(world.vault()).create(odd));
    // A backup database is not written over a file of the user's.
    writeWholeFile(world.databasePath("new~"), "the user's own");
    EXPECT_FALSE(world.create("new"));
    EXPECT_EQ(readWholeFile(world.databasePath("new~")), "the user's own");
    EXPECT_EQ(store::DatabaseIndex(world.vault()).records().size(), 1U);
}

TEST_F(OneDatabase, TakesANumberAboveCounterIndexAndFiles) {
    world.set("Backup\\Backup Database Index", "0");  // a counter that was lost
    writeWholeFile(world.data("Backup Files/Backup Index 41"), "");
    world.create("next");
    EXPECT_TRUE(fs::exists(world.data("Backup Files/Backup File 42")));
    world.open("next");
    EXPECT_EQ(world.context().backupNumber(), 42);
    world.open();
    EXPECT_EQ(world.context().backupNumber(), 1);
}

TEST_F(OneDatabase, IsPutInPlaceWhenARunEndedBetweenIndexAndRename) {
    const std::string sealed = readWholeFile(world.databasePath());
    world.write("b", "two");
    world.add({"b"});
    // As a run leaves it that was ended before its last step, its journal lost with it.
    fs::rename(world.databasePath(), world.vault().working.savePath(world.databasePath()));
    writeWholeFile(world.databasePath(), sealed);
    EXPECT_EQ(world.open(), OpenResult::Opened);
    EXPECT_EQ(world.records().size(), 2U);
    EXPECT_TRUE(world.leftovers().empty());
}

TEST_F(OneDatabase, IsSavedOverNoFileOfTheUsers) {
    for (const std::string& name :
         {world.databasePath() + ".123456789z", world.vault().working.savePath(world.databasePath())}) {
        writeWholeFile(name, "the user's own");
        world.write("b", "two");
        world.open();
        EXPECT_THROW(files::AddPipeline(world.vault(), world.context()).addFiles({world.path("b")}, {}),
                     crypto::NameTaken);
        world.start();
        EXPECT_EQ(readWholeFile(name), "the user's own");
        fs::remove(name);
    }
    EXPECT_EQ(world.check().counts().identical, 1U);
}

// With another suffix the backup of "db" would be the database "dbx": it was once written over, and wiped
// with "db".
TEST_F(OneDatabase, KeepsItsBackupOffWhatBelongsToAnotherDatabase) {
    world.create("dbx");
    world.add({"a"}, "dbx");
    const std::string other = readWholeFile(world.databasePath("dbx"));
    world.set("Config1", "x");
    world.write("b", "two");
    EXPECT_THROW(world.add({"b"}), store::BackupPlaceTaken);
    EXPECT_EQ(world.records().size(), 2U);  // the database itself is saved
    schedule::ScheduleList schedule(world.vault());
    world.machine.ui.answers = {true};
    world.open();
    EXPECT_EQ(store::deleteDatabase(world.vault(), world.context(), schedule), DeletionResult::Deleted);
    EXPECT_EQ(readWholeFile(world.databasePath("dbx")), other);
    // Nor is a database made where the backup of another one will lie.
    EXPECT_FALSE(world.create("dbxx"));
    EXPECT_EQ(world.machine.ui.messages.back().text,
              world.databasePath("dbxx") + "  is the name of an existing database.");
}

// Two databases of one file name, and then one folder for all backup databases.
TEST_F(OneDatabase, SharesItsBackupWithNoNamesake) {
    fs::create_directory(world.data("elsewhere"));
    store::CreationRequest request{world.path(""), "db", store::DatabaseKind::Numbered,
                                   crypto::DigestCode::Sha256};
    auto namesake = store::DatabaseCreation(world.vault()).create(request);
    ASSERT_TRUE(namesake);
    world.set("Config4", "0");
    world.set("Config3", world.data("elsewhere"));
    world.write("b", "two");
    EXPECT_THROW(world.add({"b"}), store::BackupPlaceTaken);
    EXPECT_TRUE(fs::is_empty(world.data("elsewhere")));
}

TEST_F(OneDatabase, WritesAndWipesNoForeignFileInThePlaceOfItsBackup) {
    world.set("Config1", "x");
    for (const std::string& mine :
         {std::string("the user's own"), std::string(16, 'm'), std::string(4096, 'm')}) {
        writeWholeFile(world.databasePath("dbx"), mine);
        const std::string name = std::to_string(mine.size());
        world.write(name, "new");
        EXPECT_THROW(world.add({name}), store::BackupPlaceTaken);
        EXPECT_EQ(readWholeFile(world.databasePath("dbx")), mine);
        // A check goes on to its end, and its updates are saved.
        world.write("a", mine);
        const CheckOutcome outcome = world.check({.reactions = {files::Reaction::UpdateKeepBackup}});
        EXPECT_NE(outcome.summary.backupFailure.find("is no backup of this database"), std::string::npos);
        EXPECT_EQ(world.check().counts().identical, world.records().size());
    }
    schedule::ScheduleList schedule(world.vault());
    world.machine.ui.answers = {true};
    world.open();
    EXPECT_EQ(store::deleteDatabase(world.vault(), world.context(), schedule), DeletionResult::Incomplete);
    EXPECT_EQ(readWholeFile(world.databasePath("dbx")), std::string(4096, 'm'));
    EXPECT_TRUE(world.machine.ui.saw(world.databasePath("dbx") +
                                     " does not hold what this database wrote there, and is left as it is."));
}

// Whoever may name a file in a watched folder could once keep every later backup from being written.
TEST_F(OneDatabase, KnowsItsBackupWhateverItsFilesAreCalled) {
    if (world.platform.paths.separator == '\\') GTEST_SKIP() << "names hold no control bytes here";
    world.create("odd");
    for (const char* name : {"1", "2", "3"}) {
        const std::string odd = std::string(100, '\x01') + name;
        world.write(odd, "x");
        EXPECT_EQ(world.add({odd}, "odd").added, 1U);
    }
    EXPECT_EQ(readWholeFile(world.databasePath("odd")), readWholeFile(world.databasePath("odd~")));
}

// What fails in the middle of a deletion, or is left by a kill, once could be deleted by nobody.
TEST_F(OneDatabase, IsDeletedPastWhatFailsAndTheRestAtTheNextStart) {
    const std::string schedule = schedule::ScheduleList(world.vault()).path();
    const auto deleteOpen = [&] {
        schedule::ScheduleList listener(world.vault());
        return store::deleteDatabase(world.vault(), world.context(), listener);
    };
    writeWholeFile(schedule, "no sealed list");
    world.open();
    world.machine.ui.answers = {true};
    EXPECT_EQ(deleteOpen(), DeletionResult::Incomplete);
    EXPECT_FALSE(fs::exists(world.databasePath()));
    EXPECT_FALSE(fs::exists(world.data("Backup Files/Backup File 1")));

    writeWholeFile(schedule, "");
    world.create("next");
    world.write("b", "two");
    world.add({"b"}, "next");
    fs::remove(world.data("Backup Files/Backup Index 2"));  // a file that is gone is none to be journalled
    for (std::uint64_t at = 1;; ++at) {
        ASSERT_LT(at, 100U);
        if (world.open("next") != OpenResult::Opened) break;
        world.machine.ui.answers = {true};
        world.machine.faults.failAt(at, base::Cause::AccessDenied, FaultPlan::Lasts::Once);
        try {
            deleteOpen();
        } catch (const base::FileFailure&) {
            // Then nothing was deleted.
        }
        world.machine.faults.clear();
        ASSERT_EQ(world.start(), core::StartResult::Ready);
    }
    for (const char* name : {"next", "next~"})
        EXPECT_FALSE(fs::exists(world.databasePath(name))) << name;
    EXPECT_FALSE(fs::exists(world.data("Backup Files/Backup File 2")));
    EXPECT_EQ(fs::file_size(world.data("Working Copies")), 0U);
}

// An older copy of its own is no foreign file.
TEST_F(OneDatabase, TakesItsBackupUpAgainAfterATimeWithoutOne) {
    world.set("Config2", "0");
    world.write("b", "two");
    world.add({"b"});
    world.set("Config2", "1");
    world.write("c", "three");
    EXPECT_EQ(world.add({"c"}).added, 1U);
    EXPECT_EQ(readWholeFile(world.databasePath()), readWholeFile(backup()));
}

TEST_F(OneDatabase, IsNotWipedThroughALink) {
    fs::rename(world.databasePath(), world.path("real"));
    if (!makeLink(world.path("real"), world.databasePath())) GTEST_SKIP() << "no links here";
    ASSERT_EQ(world.open(), OpenResult::Opened);
    const std::string sealed = readWholeFile(world.path("real"));
    schedule::ScheduleList schedule(world.vault());
    world.machine.ui.answers = {true};
    EXPECT_EQ(store::deleteDatabase(world.vault(), world.context(), schedule), DeletionResult::Incomplete);
    EXPECT_FALSE(fs::is_symlink(world.databasePath()));
    EXPECT_EQ(readWholeFile(world.path("real")), sealed);
}

TEST(BackupDatabasePath, PutsTheSuffixBeforeTheLastStopOfTheFileName) {
    World world;
    const base::PathRules& paths = world.platform.paths;
    const auto of = [&](const std::string& path) {
        return store::backupDatabasePath(path, world.configuration(), paths);
    };
    EXPECT_EQ(of("/a.b/db"), "/a.b/db~");
    EXPECT_EQ(of("/a.b/db.x.y"), "/a.b/db.x~.y");
    world.set("Config4", "0");
    world.set("Config3", "/backups");
    EXPECT_EQ(of("/a.b/db.x"), paths.join("/backups", "db~.x"));
}

TEST(CompleteLocation, MakesADriveOfALetterOnWindowsOnly) {
    const base::PathRules windows{'\\', true};
    EXPECT_EQ(store::completeLocation("c", windows), "C:\\");
    EXPECT_EQ(store::completeLocation("c\\", windows), "C:\\");
    EXPECT_EQ(store::completeLocation("d:\\data", windows), "D:\\data\\");
    EXPECT_EQ(store::completeLocation("d:/data/", windows), "D:/data/");
    EXPECT_EQ(store::completeLocation("c", {}), "c/");
}

TEST(DatabaseFile, MayBearANameThatLeavesNoRoomForSuffixes) {
    const ShortFolder folder;
    World world;
    world.write("a", "one");
    store::CreationRequest request;
    request.location = folder / "";
    request.name = std::string(245, 'n');
    auto context = store::DatabaseCreation(world.vault()).create(request);
    ASSERT_TRUE(context);
    files::AddPipeline(world.vault(), *context).addFiles({world.path("a")}, {});
    EXPECT_EQ(files::DatabaseCopy(world.vault(), *context).end() > 100, true);
    std::optional<store::OpenDatabaseContext> opened;
    EXPECT_EQ(store::DatabaseOpening(world.vault()).openWithRecovery(context->path(), opened),
              OpenResult::Opened);
}

}  // namespace
}  // namespace corvalence::test
