#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "listed_file.h"
#include "machine.h"
#include "stale_tail.h"
#include "store/database_index.h"
#include "store/database_saving.h"
#include "world.h"

namespace corvalence::test {
namespace {

using files::Reaction;

TEST(FileContentsCheck, TellsAChangedFileThenAndNow) {
    World world;
    world.write("a.q7z", "one");
    world.write("b.txt", "same");
    world.create();
    world.add({"a.q7z", "b.txt"});
    world.write("a.q7z", "three");

    const CheckOutcome outcome = world.check();

    EXPECT_EQ(outcome.counts().listed, 2U);
    EXPECT_EQ(outcome.counts().checked, 2U);
    EXPECT_EQ(outcome.counts().changed, 1U);
    EXPECT_EQ(outcome.counts().identical, 1U);
    ASSERT_EQ(outcome.changed.size(), 1U);
    const files::ChangedFileDetails& details = outcome.changed[0].details;
    EXPECT_EQ(details.then.path, world.path("a.q7z"));
    EXPECT_EQ(details.then.size, 3U);
    EXPECT_EQ(details.sizeNow, 5U);
    EXPECT_EQ(details.then.digest, "7692c3ad3540bb803c020b3aee66cd8887123234ea0c6e7143c0add73ff431ed");
    EXPECT_EQ(details.now.digest, "8b5b9db0c13db24256c829aa364aa90c6d2eba318b9232a4ab9313b954d3555f");
    EXPECT_EQ(details.type, "Q7Z File");
    EXPECT_EQ(details.lastChecked, "Database unchecked until now.");
    EXPECT_EQ(world.machine.sound.resources, std::vector<std::string>{"rml"});
    EXPECT_TRUE(world.leftovers().empty());
    EXPECT_EQ(world.machine.ui.openProgressWindows(), 0);
}

TEST(FileContentsCheck, IgnoresWhatIsNotContent) {
    World world;
    const std::string path = listFile(world, "a.q7z", "one");
    setReadOnly(path, true);
    std::filesystem::last_write_time(path,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(48));
    EXPECT_EQ(world.check().counts().identical, 1U);
}

TEST(FileContentsCheck, CountsWhatCannotBeReadAsUncheckedAndNeverAsChanged) {
    World world;
    world.write("gone", "1");
    world.write("folder", "2");
    world.write("broken", "3");
    world.write("fine", "4");
    world.create();
    world.add({"gone", "folder", "broken", "fine"});
    std::filesystem::remove(world.path("gone"));
    std::filesystem::remove(world.path("folder"));
    std::filesystem::create_directory(world.path("folder"));
    world.machine.faults.failReads(native("/broken"));

    const CheckOutcome outcome =
        world.check({{Reaction::Restore}, files::RestoreChoice::DeleteChangedFile, true});

    const std::vector<std::pair<std::string, std::string>> expected = {{world.path("gone"), "FileNotFound."},
                                                                       {world.path("folder"), "InvalidFile."},
                                                                       {world.path("broken"), "Generic."}};
    EXPECT_EQ(outcome.unchecked, expected);
    EXPECT_EQ(outcome.counts().checked, 1U);
    EXPECT_EQ(outcome.counts().unchecked, 3U);
    EXPECT_EQ(outcome.counts().changed, 0U);
    EXPECT_TRUE(world.machine.ui.saw("Couldn't check " + world.path("gone") + "\nReason: FileNotFound."));
}

TEST(FileContentsCheck, StampsTheDatabaseAlsoWhenCancelled) {
    World world;
    world.write("a", "one");
    world.write("b", "two");
    world.create();
    world.add({"a", "b"});
    EXPECT_EQ(world.check().summary.checkedAt, "12:30:05   29.2.2024");
    world.open();
    ASSERT_TRUE(world.context().record.lastCheck.has_value());

    world.machine.clock.advance(std::chrono::hours(1));
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 1;
    world.open();  // the digest of the database asks as well
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 2;
    const CheckOutcome cancelled = world.check();
    world.machine.ui.cancelAt.reset();
    EXPECT_TRUE(cancelled.counts().cancelled);
    EXPECT_EQ(cancelled.counts().checked, 0U);
    world.open();
    EXPECT_EQ(world.context().record.lastCheck, world.machine.clock.now());
    EXPECT_TRUE(world.leftovers().empty());
}

class Updating : public testing::TestWithParam<bool> {};

// Files answered in every order of update and ignore: each is asked about once, whatever moved to the end
// meanwhile.
TEST_P(Updating, AsksOnceForEachFileAndMovesItsRecordToTheEnd) {
    World world;
    for (const char* name : {"a", "b", "c", "d"})
        world.write(name, name);
    world.create();
    world.add({"a", "b", "c", "d"});
    for (const char* name : {"a", "b", "c"})
        world.write(name, "changed");

    const Answers answers{{Reaction::UpdateWithBackup, Reaction::Ignore, Reaction::UpdateKeepBackup},
                          files::RestoreChoice::DeleteChangedFile,
                          GetParam()};
    const CheckOutcome outcome = world.check(answers);
    EXPECT_EQ(outcome.changed.size(), 3U);
    EXPECT_EQ(outcome.counts().changed, 3U);
    EXPECT_EQ(outcome.counts().identical, 1U);

    std::vector<std::string> order;
    for (const auto& record : world.records())
        order.push_back(record.path.substr(world.path("").size()));
    EXPECT_EQ(order, (std::vector<std::string>{"b", "d", "a", "c"}));
    EXPECT_EQ(world.check().counts().changed, 1U);

    world.write("a", "again");
    world.write("c", "again");
    EXPECT_TRUE(world.restore("a").restored);
    EXPECT_EQ(world.read("a"), "changed");
    EXPECT_EQ(world.restore("c").message,
              "The backup file has also been modified!\n\nBackup file not restored.");
    EXPECT_EQ(world.read("c"), "again");
    EXPECT_TRUE(world.leftovers().empty());
}

INSTANTIATE_TEST_SUITE_P(FileContentsCheck, Updating, testing::Values(true, false));

TEST(FileContentsCheck, SealsCollectedUpdatesEveryFewSecondsAndOnCancel) {
    World world;
    for (int i = 0; i < 10; ++i)
        world.write(std::to_string(i), "then");
    world.create();
    world.addAll();
    for (int i = 0; i < 10; ++i)
        world.write(std::to_string(i), "now");
    // Two seconds a file; the check is cancelled at the sixth.
    world.open();
    const auto before = world.machine.ui.cancelQuestions();
    world.machine.ui.meanwhile = [&] { world.machine.clock.advance(std::chrono::seconds(2)); };
    world.machine.ui.cancelAt = before + 12;
    const CheckOutcome outcome =
        world.check({{Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, false});
    world.machine.ui.cancelAt.reset();
    world.machine.ui.meanwhile = nullptr;
    EXPECT_TRUE(outcome.counts().cancelled);
    const std::size_t updated = outcome.changed.size();
    EXPECT_GT(updated, 2U);
    EXPECT_EQ(world.check().counts().changed, 10 - updated);
    // What was updated before the cancel has its new backup as well.
    const std::string first = outcome.changed[0].details.then.path.substr(world.path("").size());
    world.write(first, "later");
    EXPECT_TRUE(world.restore(first).restored);
    EXPECT_EQ(world.read(first), "now");
}

// The record once went ahead of its backup, and the file could not be restored any more.
TEST(FileContentsCheck, UpdatesNothingWhenTheFileChangesAgainBeforeItIsBackedUp) {
    World world;
    listFile(world, "a", "one");
    world.write("a", "two");
    world.open();
    // The first question after the digest is the one before the backup is read.
    const auto before = world.machine.ui.cancelQuestions();
    world.machine.ui.meanwhile = [&] {
        if (world.machine.ui.cancelQuestions() == before + 4) world.write("a", "three");
    };
    const CheckOutcome outcome =
        world.check({{Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, false});
    world.machine.ui.meanwhile = nullptr;
    ASSERT_EQ(outcome.changed.size(), 1U);
    EXPECT_FALSE(outcome.changed[0].done);
    EXPECT_EQ(outcome.changed[0].message, "The file has been changed again meanwhile.");
    EXPECT_TRUE(world.restore("a").restored);
    EXPECT_EQ(world.read("a"), "one");
}

// At any question for Cancel an update of a file that fills several blocks either comes about whole, with a
// backup that serves, or not at all; the counters add up.
TEST(FileContentsCheck, IsCancelledAnywhereInAnUpdateWithoutPartingRecordAndBackup) {
    World world;
    const std::string old(600'000, 'o');
    listFile(world, "a", old);
    for (std::uint64_t question = 1;; ++question) {
        SCOPED_TRACE(question);
        world.write("a", std::string(600'000, 'n'));
        world.open();
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + question + 1;  // one to open it
        const CheckOutcome outcome =
            world.check({{Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, false});
        world.machine.ui.cancelAt.reset();
        const bool updated = !outcome.changed.empty() && outcome.changed[0].done;
        EXPECT_EQ(outcome.counts().checked, outcome.changed.size());
        EXPECT_EQ(outcome.counts().identical, 0U);
        EXPECT_EQ(world.check().counts().changed, updated ? 0U : 1U);
        world.write("a", "spoilt");
        EXPECT_TRUE(world.restore("a").restored);
        EXPECT_EQ(world.read("a") == old, !updated);
        EXPECT_TRUE(world.leftovers().empty());
        ASSERT_LT(question, 40U);
        if (updated) break;
    }
}

// A listed file that became a link to the container was once copied into it until the disk was full, or
// restored over it.
TEST(FileContentsCheck, NeitherBacksUpNorRestoresOverItsOwnFiles) {
    World world;
    world.write("a", std::string(100'000, 'a'));
    world.write("b", "two");
    world.create();
    world.add({"a", "b"});
    const std::string container = world.data("Backup Files/Backup File 1");
    for (const std::string& own : {container, world.data("Backup Files/Database Index")}) {
        std::filesystem::remove(world.path("b"));
        if (!makeLink(own, world.path("b"))) GTEST_SKIP() << "no links here";
        for (const Reaction reaction : {Reaction::UpdateWithBackup, Reaction::Restore}) {
            const CheckOutcome outcome =
                world.check({{reaction}, files::RestoreChoice::DeleteChangedFile, false});
            ASSERT_EQ(outcome.changed.size(), 1U);
            if (own == container || reaction == Reaction::Restore) {
                EXPECT_FALSE(outcome.changed[0].done);
                EXPECT_FALSE(outcome.changed[0].message.empty());
            }
        }
    }
    std::filesystem::remove(world.path("b"));
    world.write("a", "spoilt");
    EXPECT_TRUE(world.restore("a").restored);
    EXPECT_EQ(world.read("a").size(), 100'000U);
}

// Whatever fails on the way: what was told as updated is, and what was not is told.
TEST(FileContentsCheck, TellsOfNoUpdateThatIsNotThere) {
    const std::uint64_t step = base::PathRules().separator == World().platform.paths.separator ? 1 : 7;
    for (std::uint64_t at = 1;; at += step) {
        SCOPED_TRACE(at);
        World world;
        for (const char* name : {"a", "b"})
            world.write(name, "then");
        world.create();
        world.add({"a", "b"});
        for (const char* name : {"a", "b"})
            world.write(name, "now");
        world.machine.faults.failAt(at, base::Cause::DiskFull, FaultPlan::Lasts::Once);
        CheckOutcome outcome;
        try {
            outcome =
                world.check({{Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, false});
        } catch (const base::FileFailure&) {
            ASSERT_LT(at, 100U);
            continue;
        }
        const bool struck = world.machine.faults.hasStruck();
        world.machine.faults.clear();
        world.start();
        const auto told = std::count_if(outcome.changed.begin(), outcome.changed.end(),
                                        [](const Finding& finding) { return finding.done; });
        EXPECT_EQ(outcome.changed.size(), 2U);
        EXPECT_EQ(world.check().counts().changed, 2U - static_cast<std::size_t>(told));
        for (const char* name : {"a", "b"}) {
            world.write(name, "spoilt");
            EXPECT_TRUE(world.restore(name).restored);
        }
        if (!struck) break;
    }
}

TEST(FileContentsCheck, MakesNoFirstBackupWhereBackupsAreTurnedOff) {
    World world;
    world.set("Config5", "0");
    listFile(world, "a", "one");
    world.write("a", "two");
    const CheckOutcome outcome =
        world.check({{Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, false});
    EXPECT_EQ(outcome.notes,
              std::vector<std::string>{"No backup was made, as backups of files are turned off."});
    EXPECT_EQ(std::filesystem::file_size(world.data("Backup Files/Backup File 1")), 0U);
    EXPECT_EQ(world.check().counts().identical, 1U);
}

TEST(FileContentsCheck, AllowsNothingButIgnoringTheDatabaseIndex) {
    World world;
    world.create();
    const std::string index = store::DatabaseIndex(world.vault()).path();
    world.add({index});
    const CheckOutcome outcome =
        world.check({{Reaction::UpdateWithBackup}, files::RestoreChoice::DeleteChangedFile, true});
    ASSERT_EQ(outcome.changed.size(), 1U);  // its digest changed as soon as the database was saved
    EXPECT_TRUE(outcome.changed[0].details.onlyIgnore);
    EXPECT_EQ(outcome.changed[0].reaction, Reaction::Ignore);
}

TEST(FileContentsCheck, RefusesADatabaseThatChangedSinceItWasOpened) {
    World world;
    listFile(world, "a", "one");
    world.open();
    std::string sealed = readWholeFile(world.databasePath());
    sealed[5] = static_cast<char>(sealed[5] ^ 1);
    writeWholeFile(world.databasePath(), sealed);
    try {
        files::DatabaseCopy copy(world.vault(), world.context());
        FAIL();
    } catch (const files::DatabaseChanged& changed) {
        EXPECT_EQ(changed.what(),
                  world.databasePath() + " database file has been changed and cannot be checked!");
    }
    EXPECT_TRUE(world.leftovers().empty());
}

TEST(FileContentsCheck, OpensAnEmptyDatabaseWithZeroCounts) {
    World world;
    world.create();
    const CheckOutcome outcome = world.check();
    EXPECT_EQ(outcome.counts().listed, 0U);
    EXPECT_EQ(outcome.counts().identical, 0U);
}

// The last sealed block of a database is filled up with what the block before it left, which may hold CR LF:
// the reader then meets a few bytes behind the last record. They are no record, and the next record must not
// come behind them.
TEST(FileContentsCheck, PassesOverWhatTheLastSealedBlockLeftBehind) {
    World world;
    world.create();
    world.open();
    const crypto::ChainValue chain = crypto::PathIV(world.databasePath());
    files::FileRecord record;
    record.digest = std::string(64, 'a');
    record.attributes = 32;
    const std::string text = textWithStaleTail(world.vault().session.key, chain, [&](int number) {
        record.path = world.path(std::to_string(number));
        record.path.append(paddingToOneByte(record.render().size()), 'x');
        return record.render();
    });
    store::saveDatabase(world.vault(), world.context(),
                        [&](crypto::SealWriter& writer) { writer.write(base::bytesOf(text)); });
    EXPECT_EQ(world.check().counts().listed, 1U);

    world.write("next", "content");
    EXPECT_EQ(world.add({"next"}).added, 1U);
    const auto records = world.records();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[1].path, world.path("next"));
}

}  // namespace
}  // namespace corvalence::test
