#include "crypto/working_files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/hex_text.h"
#include "crypto/md5.h"
#include "crypto/wipe.h"
#include "failure_of.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

namespace fs = std::filesystem;

class WorkingFilesTest : public testing::Test {
  protected:
    /// Ends the run as a kill does, its temporaries left as they are, and starts the next one.
    void killAndRestart(std::initializer_list<crypto::TemporaryFile*> alive = {}) {
        for (auto* file : alive)
            file->abandon();
        run.reset();
        run = std::make_unique<crypto::WorkingFiles>(machine.files, journal, machine.platform.paths);
        run->clearLeftovers();
    }

    /// New contents for two files that only make sense together.
    std::vector<std::pair<crypto::TemporaryFile, std::string>> newPair(const char* second = "two") {
        std::vector<std::pair<crypto::TemporaryFile, std::string>> moves;
        for (const char* name : {"one", second}) {
            machine.folder.write(name, "old");
            auto file = run->createSealed(machine.folder / name, ".new");
            file.file().write(base::bytesOf("new"));
            moves.emplace_back(std::move(file), machine.folder / name);
        }
        return moves;
    }

    TestPlatform machine;
    std::string journal = machine.folder / "journal";
    std::unique_ptr<crypto::WorkingFiles> run =
        std::make_unique<crypto::WorkingFiles>(machine.files, journal, machine.platform.paths);
};

TEST_F(WorkingFilesTest, EndPlainOnesByAWipeAndSealedOnesByARemoval) {
    {
        auto plain = run->createPlain(machine.folder / "db", ".plain");
        plain.file().write(base::bytesOf("secret"));
        auto sealed = run->createSealed(machine.folder / "db", ".sealed");
        fs::create_hard_link(plain.path(), machine.folder / "plain link");
        EXPECT_TRUE(isOwnersAlone(plain.path()));
    }
    EXPECT_EQ(machine.folder.read("plain link"), std::string(6, '\xFF'));
    EXPECT_FALSE(machine.folder.has("db.plain") || machine.folder.has("db.sealed"));
    EXPECT_EQ(fs::file_size(journal), 0U);
}

TEST_F(WorkingFilesTest, AreClearedAwayAfterAKillAndNothingElseIs) {
    auto plain = run->createPlain(machine.folder / "db", ".plain");
    plain.file().write(base::bytesOf("secret"));
    auto sealed = run->createSealed(machine.folder / "db", ".sealed");
    fs::create_hard_link(plain.path(), machine.folder / "plain link");
    auto gone = run->createPlain(machine.folder / "old", ".plain");
    // Without births a new file with the old one's number is the old one.
    const bool tellsApart = gone.file().status().identity.birth != 0;
    gone.abandon();
    fs::remove(gone.path());
    if (tellsApart) machine.folder.write("old.plain", "the user's own, made since");
    auto save = run->createSave(machine.folder / "db");
    killAndRestart({&plain, &sealed, &gone, &save});
    EXPECT_EQ(machine.folder.read("plain link"), std::string(6, '\xFF'));
    EXPECT_FALSE(machine.folder.has("db.plain") || machine.folder.has("db.sealed"));
    if (tellsApart) {
        EXPECT_EQ(machine.folder.read("old.plain"), "the user's own, made since");
    }
    ASSERT_EQ(run->pendingSaves().size(), 1U);
    EXPECT_EQ(run->pendingSaves()[0].beside, run->savePath(machine.folder / "db"));
    // Until they are settled, temporaries of the new run do not make it forget them.
    { auto other = run->createSealed(machine.folder / "x", ".sealed"); }
    killAndRestart();
    EXPECT_EQ(run->pendingSaves().size(), 1U);
    run->pendingSettled();
    EXPECT_EQ(fs::file_size(journal), 0U);
    for (auto* file : {&plain, &sealed, &gone, &save})
        file->abandon();
}

TEST_F(WorkingFilesTest, NeverTouchAFileThatHasTheirName) {
    machine.folder.write("db.plain", "mine");
    EXPECT_THROW(run->createPlain(machine.folder / "db", ".plain"), crypto::NameTaken);
    if (makeLink("elsewhere", machine.folder / "link.plain")) {
        EXPECT_THROW(run->createPlain(machine.folder / "link", ".plain"), crypto::NameTaken);
    }
    killAndRestart();
    EXPECT_EQ(machine.folder.read("db.plain"), "mine");
}

// What cannot be overwritten on a full disk must not be in its own way afterwards, nor be told as the user's.
TEST_F(WorkingFilesTest, AreEndedByTheSameRunOnceThatCanBe) {
    {
        auto plain = run->createPlain(machine.folder / "db", ".plain");
        plain.file().write(base::bytesOf("secret"));
        machine.faults.failAt(1, base::Cause::DiskFull, FaultPlan::Lasts::FromThere);
    }
    EXPECT_EQ(causeOf([&] { run->createPlain(machine.folder / "db", ".plain"); }), base::Cause::DiskFull);
    machine.faults.clear();
    fs::create_hard_link(machine.folder / "db.plain", machine.folder / "plain link");
    run->createPlain(machine.folder / "db", ".plain");
    EXPECT_EQ(machine.folder.read("plain link"), std::string(6, '\xFF'));
    EXPECT_EQ(fs::file_size(journal), 0U);
}

TEST_F(WorkingFilesTest, GetAShortNameThatIsTheSameEveryTime) {
    const std::string longest = machine.folder / std::string(machine.files.nameLimit(), 'n');
    const std::string path = run->createPlain(longest, ".plain").path();
    EXPECT_EQ(run->createPlain(longest, ".plain").path(), path);
    EXPECT_NE(run->createPlain(longest + "x", ".plain").path(), path);
}

// Whichever rename a run was ended before, both are old or both are new.
TEST_F(WorkingFilesTest, MakeMovesAllOrNone) {
    for (std::uint64_t place = 1; place < 14; ++place) {
        SCOPED_TRACE(place);
        auto moves = newPair();
        machine.faults.failAt(place, base::Cause::AccessDenied, FaultPlan::Lasts::Once);
        const bool failed = causeOf([&] { run->commitMoves(std::move(moves)); }) != base::Cause::None;
        moves.clear();
        machine.faults.clear();
        killAndRestart();
        EXPECT_EQ(machine.folder.read("one"), machine.folder.read("two"));
        EXPECT_TRUE(failed || machine.folder.read("one") == "new");
        EXPECT_FALSE(machine.folder.has("one.new") || machine.folder.has("two.new"));
    }
}

// A run that goes on after a failed rename works on the new files, never on one old and one new.
TEST_F(WorkingFilesTest, CarryCommittedMovesOnInTheSameRun) {
    auto moves = newPair();
    fs::remove(machine.folder / "two");
    fs::create_directories(machine.folder / "two/in the way");  // no file can be renamed over it
    EXPECT_THROW(run->commitMoves(std::move(moves)), base::FileFailure);
    EXPECT_THROW(run->createPlain(machine.folder / "db", ".plain"), base::FileFailure);
    fs::remove_all(machine.folder / "two");
    run->createPlain(machine.folder / "db", ".plain");
    EXPECT_EQ(machine.folder.read("one") + machine.folder.read("two"), "newnew");
}

// The place of one of them was not there for a while: a folder that is not mounted.
TEST_F(WorkingFilesTest, CarryCommittedMovesOnOnceTheirPlaceIsBack) {
    fs::create_directory(machine.folder / "away");
    auto moves = newPair("away/two");
    machine.faults.failAt(9, base::Cause::AccessDenied, FaultPlan::Lasts::Once);  // the second rename
    EXPECT_THROW(run->commitMoves(std::move(moves)), crypto::MovesPending);
    EXPECT_EQ(machine.folder.read("one"), "new");
    machine.faults.clear();
    run.reset();
    fs::rename(machine.folder / "away", machine.folder / "hidden");
    fs::create_directory(machine.folder / "away");
    killAndRestart();
    EXPECT_EQ(run->uncleared().size(), 1U);
    // A group that never was committed does not take the waiting one with it, nor is it taken along.
    auto others = newPair();
    machine.faults.failAt(5, base::Cause::DiskFull, FaultPlan::Lasts::FromThere);
    EXPECT_THROW(run->commitMoves(std::move(others)), base::FileFailure);
    machine.faults.clear();
    run.reset();
    fs::remove(machine.folder / "away");
    fs::rename(machine.folder / "hidden", machine.folder / "away");
    killAndRestart();
    EXPECT_EQ(machine.folder.read("away/two"), "new");
    EXPECT_EQ(machine.folder.read("one") + machine.folder.read("two"), "oldold");
    EXPECT_EQ(fs::file_size(journal), 0U);
}

TEST_F(WorkingFilesTest, DropWhatWasBegunWhateverTheJournalEndsWith) {
    for (const char* torn : {"", "a line that was not fini"}) {
        auto plain = run->createPlain(machine.folder / "db", ".plain");
        auto save = run->createSave(machine.folder / "saved");
        auto database = run->createDatabase(machine.folder / (std::string("db") + torn));
        auto moves = newPair();
        fs::remove(machine.folder / "two");
        fs::create_directories(machine.folder / "two/in the way");
        EXPECT_THROW(run->commitMoves(std::move(moves)), crypto::MovesPending);
        for (auto* file : {&plain, &save, &database})
            file->abandon();
        run.reset();
        machine.folder.write("journal", machine.folder.read("journal") + torn);
        run = std::make_unique<crypto::WorkingFiles>(machine.files, journal, machine.platform.paths);
        run->dropPending();
        fs::remove_all(machine.folder / "two");
        killAndRestart();
        EXPECT_TRUE(run->pendingSaves().empty());
        EXPECT_FALSE(machine.folder.has("two") || machine.folder.has("two.new"));
        EXPECT_FALSE(machine.folder.has("db.plain") || fs::exists(save.path()));
        EXPECT_TRUE(fs::exists(database.path()));
        EXPECT_EQ(fs::file_size(journal), 0U);
    }
}

// A restored file that must not be written any more could not be opened again for its wiping.
TEST_F(WorkingFilesTest, AreWipedThoughTheyCannotBeOpenedAgain) {
    {
        auto plain = run->createPlain(machine.folder / "db", ".plain");
        plain.file().write(base::bytesOf("secret"));
        fs::create_hard_link(plain.path(), machine.folder / "plain link");
        plain.close();
        EXPECT_THROW(plain.moveTo(machine.folder / "missing/db"), base::FileFailure);
        EXPECT_THROW(machine.files.openExclusive(plain.path()), base::FileFailure);  // it is held
    }
    EXPECT_EQ(machine.folder.read("plain link"), std::string(6, '\xFF'));
}

// The number of a volume may change with every start of the machine.
TEST_F(WorkingFilesTest, AreKnownAfterARestartOfTheMachine) {
    auto plain = run->createPlain(machine.folder / "db", ".plain");
    plain.file().write(base::bytesOf("secret"));
    const std::string volume = std::to_string(plain.file().status().identity.volume);
    plain.abandon();
    run.reset();
    const std::string text = machine.folder.read("journal");
    const std::size_t at = text.find("\x7F" + volume + "\x7F");
    ASSERT_NE(at, std::string::npos);
    // The line anew, with another volume and its own sum.
    const std::size_t begin = text.rfind('\n', at) + 1;
    std::string line = text.substr(begin, text.size() - begin - 9);
    line.replace(line.find("\x7F" + volume), volume.size() + 1, "\x7F" + volume + "1");
    line += base::hexText(crypto::Md5::of(base::bytesOf(line))).substr(0, 8) + "\n";
    machine.folder.write("journal", text.substr(0, begin) + line);
    killAndRestart();
    EXPECT_FALSE(machine.folder.has("db.plain"));
}

TEST(WipeFile, LeavesNothingOfAFileAndRemovesAnEmptyOne) {
    TestPlatform machine;
    const std::string path = machine.folder.write("file", std::string(300001, 's'));
    fs::create_hard_link(path, machine.folder / "link");
    crypto::wipeFile(machine.files, path);
    EXPECT_FALSE(machine.folder.has("file"));
    EXPECT_EQ(machine.folder.read("link"), std::string(300001, '\xFF'));
    crypto::wipeFile(machine.files, machine.folder.write("empty", ""));
    EXPECT_FALSE(machine.folder.has("empty"));
}

}  // namespace
}  // namespace corvalence::test
