#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "aftermath.h"
#include "base/hex_text.h"
#include "crypto/md5.h"
#include "damages.h"
#include "files/backup_store.h"
#include "run_program.h"
#include "schedule/schedule_list.h"
#include "store/database_deletion.h"

namespace corvalence::test {
namespace {

namespace fs = std::filesystem;
using files::RestoreChoice;

/// A world whose user changed "a" and "b", and one file of it that is to be damaged.
class Corruption : public testing::Test {
  protected:
    /// Lets `day` pass once for each damage to `file`, on a fresh world each time.
    void forEachDamage(const std::string& file, const std::string& otherFile,
                       const std::function<void(World&)>& day) {
        const std::string whole = readWholeFile(stage().folder() + file);
        for (const Damage& damage : damages(readWholeFile(stage().folder() + otherFile))) {
            SCOPED_TRACE(file + ": " + damage.name);
            stage().reset();
            writeWholeFile(stage().folder() + file, damage.apply(whole));
            World world(stage().folder());
            day(world);
            if (HasFailure()) break;
        }
    }

    /// The user's files are as they were; "a" may be as it was recorded, where `restored`.
    void expectFiles(World& world, bool restored = false) {
        for (const auto& [name, content] : stage().before())
            EXPECT_EQ(world.read(name), restored && name == "a" ? recordedContent(name) : content) << name;
    }

    /// A refusal is an answer: it names the file and harms none.
    template <typename Work>
    bool passes(Work&& work) {
        try {
            work();
            return true;
        } catch (const base::FileFailure& failure) {
            EXPECT_FALSE(failure.path().empty());
            EXPECT_NE(failure.cause(), base::Cause::None);
        }
        return false;
    }

    void use(std::string_view scenario) { stage_.emplace(scenarioOf(scenario)); }
    const Stage& stage() const { return *stage_; }

  private:
    std::optional<Stage> stage_;
};

std::string changedQuestion(World& world) {
    return "Database  " + world.databasePath() + " could not be opened. \n\nReason: " + world.databasePath() +
           " has been changed!\n\nWould you like to open the backup database? ";
}

TEST_F(Corruption, OfADatabaseIsToldAndItsBackupDatabaseServes) {
    use("restore");
    forEachDamage("data/Databases/db", "data/Databases/other", [&](World& world) {
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        EXPECT_EQ(world.open(), store::OpenResult::Refused);  // nobody said yes
        EXPECT_TRUE(world.machine.ui.saw(changedQuestion(world)));
        world.machine.ui.answers = {true};
        EXPECT_EQ(world.open(), store::OpenResult::Restored);
        EXPECT_EQ(world.check().counts().changed, 2U);
        EXPECT_TRUE(world.restore("a").restored);
        expectFiles(world, true);
    });
}

TEST_F(Corruption, OfABackupDatabaseHindersNothing) {
    use("restore");
    forEachDamage("data/Databases/db~", "data/Databases/other~", [&](World& world) {
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        EXPECT_EQ(world.open(), store::OpenResult::Opened);
        EXPECT_TRUE(world.machine.ui.questions.empty());
    });
}

TEST_F(Corruption, OfADatabaseAndItsBackupDatabaseOpensNothing) {
    use("restore");
    forEachDamage("data/Databases/db", "data/Databases/other", [&](World& world) {
        std::string backup = readWholeFile(world.databasePath("db~"));
        backup[5] = static_cast<char>(backup[5] ^ 1);
        writeWholeFile(world.databasePath("db~"), backup);
        const std::string damaged = readWholeFile(world.databasePath());
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        world.machine.ui.answers = {true};
        EXPECT_EQ(world.open(), store::OpenResult::Refused);
        EXPECT_TRUE(world.machine.ui.saw("Database  " + world.databasePath() +
                                         " could not be opened. \n\nReason: " + world.databasePath("db~") +
                                         " has also been changed!"));
        EXPECT_EQ(readWholeFile(world.databasePath()), damaged);
        EXPECT_EQ(readWholeFile(world.databasePath("db~")), backup);
        expectFiles(world);
    });
}

class OfBackups : public Corruption,
                  public testing::WithParamInterface<std::tuple<const char*, const char*>> {
  protected:
    void restoreAndGoOn(World& world) {
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        const auto result = world.restore("a");
        expectFiles(world, result.restored);
        EXPECT_FALSE(result.message.empty());
        world.write("later", "written later");
        const bool added = passes([&] { EXPECT_EQ(world.add({"later"}).added, 1U); });
        world.write("later", "spoilt");
        if (added) {
            EXPECT_TRUE(world.restore("later").restored);
            EXPECT_EQ(world.read("later"), "written later");
        }
        passes([&] { world.check({.reactions = {files::Reaction::UpdateWithBackup}}); });
        EXPECT_TRUE(world.leftovers(world.path("a")).empty());
        EXPECT_EQ(world.start(), core::StartResult::Ready);
    }
};

// Whatever the lists and containers of backups hold, a file gets its own recorded content or none.
TEST_P(OfBackups, NeverRestoresAWrongFile) {
    const auto [scenario, kind] = GetParam();
    use(scenario);
    const std::string folder = "data/Backup Files/";
    forEachDamage(folder + kind + " 1", folder + kind + " 2", [&](World& world) { restoreAndGoOn(world); });
}

INSTANTIATE_TEST_SUITE_P(Corruption, OfBackups,
                         testing::Combine(testing::Values("restore", "restorePlain"),
                                          testing::Values("Backup File", "Backup Index")));

TEST_F(Corruption, OfABackupIsToldWhereItsFileIsRestored) {
    use("restore");
    World world(stage().folder());
    const std::string container = world.data("Backup Files/Backup File 1");
    std::string bytes = readWholeFile(container);
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 1);  // within the second of three
    writeWholeFile(container, bytes);
    ASSERT_EQ(world.start(), core::StartResult::Ready);
    EXPECT_EQ(world.restore("a").message,
              "The backup file has also been modified!\n\nBackup file not restored.");
    EXPECT_TRUE(world.restore("b").restored);
    EXPECT_EQ(world.read("b"), recordedContent("b"));
}

TEST_F(Corruption, OfTheIndexLetsNobodyInOrLosesNoFile) {
    use("restore");
    forEachDamage("data/Backup Files/Database Index", "data/Databases/db", [&](World& world) {
        const std::string sealed = readWholeFile(world.databasePath());
        core::StartResult started = core::StartResult::PasswordRefused;
        passes([&] { started = world.start(); });
        if (started == core::StartResult::Ready) {
            passes([&] {
                world.open();
                if (world.open("other") == store::OpenResult::Opened) {
                    EXPECT_EQ(world.records("other").size(), 1U);
                }
            });
            passes([&] { EXPECT_TRUE(world.create("new")) << world.machine.ui.transcript(); });
        }
        // Neither a database nor its backups are taken for something to clear away.
        EXPECT_EQ(readWholeFile(world.databasePath()), sealed);
        EXPECT_GT(fs::file_size(world.data("Backup Files/Backup File 1")), 0U);
        expectFiles(world);
    });
}

TEST_F(Corruption, OfTheScheduleHindersNoDeletionForGood) {
    use("restore");
    forEachDamage("data/Checking Schedule/Database Checking Schedule", "data/Databases/db",
                  [&](World& world) {
                      ASSERT_EQ(world.start(), core::StartResult::Ready);
                      world.machine.ui.answers.assign(10, true);
                      ASSERT_EQ(world.open(), store::OpenResult::Opened);
                      schedule::ScheduleList schedule(world.vault());
                      passes([&] { store::deleteDatabase(world.vault(), world.context(), schedule); });
                      EXPECT_EQ(world.open("other"), store::OpenResult::Opened);
                      expectFiles(world);
                  });
}

TEST_F(Corruption, OfTheSettingsNeverMakesANewInstallationOverTheOldOne) {
    use("restore");
    forEachDamage("settings.json", "data/Databases/db", [&](World& world) {
        const std::string index = readWholeFile(world.data("Backup Files/Database Index"));
        passes([&] {
            if (world.start() == core::StartResult::Ready) {
                world.open();
                world.create("new");
            } else {
                EXPECT_NE(world.install(), core::InstallResult::Installed);
                EXPECT_EQ(readWholeFile(world.data("Backup Files/Database Index")), index);
            }
        });
        expectFiles(world);
    });
}

class OfTheJournal : public Corruption, public testing::WithParamInterface<int> {
  protected:
    /// A world in which an update was ended by force at the parameter's operation.
    void endInUpdate() {
        stage().reset();
        ASSERT_EQ(runProgram(RELIABILITY_CHILD, {stage().folder(), "updateAll", std::to_string(GetParam())}),
                  FaultPlan::kEndedExitCode);
    }

    /// All files but the working ones, of which a damaged journal may leave one too many.
    void expectNothingTouched(World& world) {
        world.machine.ui.answers.assign(10, true);
        ASSERT_EQ(world.start(), core::StartResult::Ready);
        expectFiles(world);
        for (const char* database : {"db", "other"}) {
            const store::OpenResult opened = world.open(database);
            EXPECT_TRUE(opened == store::OpenResult::Opened || opened == store::OpenResult::Restored)
                << database;
        }
        world.write("kept", "spoilt");
        passes([&] {
            for (const files::FileRecord& record : world.records("other")) {
                files::FileRestore restore(world.vault(), world.context());
                EXPECT_TRUE(restore.restoreFile(record, RestoreChoice::DeleteChangedFile).restored);
            }
        });
        EXPECT_EQ(world.read("kept"), recordedContent("kept"));
    }
};

// A journal that names the wrong files must not have any of them wiped, removed or renamed. Its own files are
// the very ones that it means, as the same process made both.
TEST_P(OfTheJournal, TouchesNoFileThatItMerelyNames) {
    use("updateAll");
    const std::string journal = stage().folder() + "data/Working Copies";
    for (const Damage& damage : damages(readWholeFile(stage().folder() + "settings.json"))) {
        SCOPED_TRACE(damage.name);
        endInUpdate();
        const std::string whole = readWholeFile(journal);
        ASSERT_FALSE(whole.empty());
        writeWholeFile(journal, damage.apply(whole));
        World world(stage().folder());
        expectNothingTouched(world);
        ASSERT_FALSE(HasFailure());
    }
}

// With a plain copy made, in the middle of a save, between the two renames of a pair of backups.
INSTANTIATE_TEST_SUITE_P(Corruption, OfTheJournal, testing::Values(6, 14, 50));

TEST_F(Corruption, OfTheJournalByAForgerMeetsOnlyFilesOfTheNumberItNames) {
    use("restore");
    World world(stage().folder());
    const platform::FileIdentity other =
        world.machine.system.files.status(world.path("a"), platform::Follow::No)->identity;
    std::string journal;
    for (const std::string& file :
         {world.path("b"), world.databasePath(), world.data("Backup Files/Backup File 1")}) {
        for (const char* kind : {"intent", "plain", "sealed", "save", "move"}) {
            std::string line;
            for (const std::string& field :
                 {std::string(kind), file, std::to_string(other.volume), std::to_string(other.number),
                  std::to_string(other.birth), world.path("kept")})
                line += field + "\x7F";
            journal += line + base::hexText(crypto::Md5::of(base::bytesOf(line))).substr(0, 8) + "\n";
        }
    }
    const std::string commit = "commit\x7F";
    journal += commit + base::hexText(crypto::Md5::of(base::bytesOf(commit))).substr(0, 8) + "\n";
    const std::string sealed = readWholeFile(world.databasePath());
    const std::string container = readWholeFile(world.data("Backup Files/Backup File 1"));
    writeWholeFile(world.data("Working Copies"), journal);
    ASSERT_EQ(world.start(), core::StartResult::Ready);
    expectFiles(world);
    EXPECT_EQ(readWholeFile(world.databasePath()), sealed);
    EXPECT_EQ(readWholeFile(world.data("Backup Files/Backup File 1")), container);
    EXPECT_EQ(fs::file_size(world.data("Working Copies")), 0U);
}

}  // namespace
}  // namespace corvalence::test
