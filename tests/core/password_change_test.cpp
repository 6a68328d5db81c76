#include "core/password_change.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "crypto/sealed_file.h"
#include "failure_of.h"
#include "files/backup_index.h"
#include "schedule/schedule_list.h"
#include "store/backup_database.h"
#include "store/backup_pair.h"
#include "store/component_files.h"
#include "store/component_index.h"
#include "store/database_digest.h"
#include "store/database_index.h"
#include "store/recent_list.h"
#include "world.h"

namespace corvalence::test {
namespace {

namespace fs = std::filesystem;
using core::EntryFault;
using core::PasswordChangeResult;
using core::StartResult;
using store::OpenResult;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kOld = "open sesame";
constexpr const char* kNew = "sesame, open";

/// An installation with a database of files of many sizes, sealed and plain backups among them.
class PasswordChange : public testing::Test {
  protected:
    PasswordChange() {
        for (const std::size_t size : {0U, 1U, 15U, 16U, 17U, 700'001U})
            write(std::to_string(size), std::string(size, 's'));
        world.create();
        world.add({"0", "1", "15", "16"});
        world.set("Config17", "P");
        write("plain", "not sealed");
        world.add({"plain"});
        world.set("Config17", "N");
        world.add({"17", "700001"});
        world.create("empty");
    }

    void write(const std::string& name, const std::string& content) {
        world.write(name, content);
        contents[name] = content;
    }
    std::string pathOf(const char* name) { return world.data("Backup Files/") + name; }
    /// Every byte of the installation.
    std::map<std::string, std::string> everything() {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(world.data(""))) {
            if (entry.is_regular_file())
                files[entry.path().string()] = readIfOpen(entry.path().string()).value_or("");
        }
        return files;
    }
    void expectUnchanged(const std::map<std::string, std::string>& before) {
        EXPECT_TRUE(everything() == before);
        EXPECT_EQ(world.start(), StartResult::Ready);
        EXPECT_TRUE(world.leftovers().empty());
    }
    void seal(const std::string& path, std::string_view text, const crypto::ChainValue& chain) {
        crypto::sealFile(world.vault().working, text, path, world.vault().session.key, chain);
    }
    std::string unsealed(const std::string& path, const crypto::ChainValue& chain) {
        return std::string(crypto::unsealText(world.machine.files, path, world.vault().session.key, chain,
                                              crypto::kUnsealBackupFolder)
                               .view());
    }
    void change(std::vector<std::string> reports = {}) {
        const auto leftovers = world.leftovers();
        const auto outcome = world.changePassword(kNew, std::move(reports));
        ASSERT_EQ(outcome.result, PasswordChangeResult::Changed) << world.machine.ui.transcript();
        left.clear();
        for (const core::LeftFile& file : outcome.left)
            left.push_back(file.path);
        EXPECT_TRUE(world.machine.ui.saw("Password change successfully completed."));
        EXPECT_EQ(world.start(), StartResult::PasswordRefused);
        world.password.password = kNew;
        ASSERT_EQ(world.start(), StartResult::Ready);
        EXPECT_EQ(world.leftovers(), leftovers);
    }
    void expectRestores() {
        for (const files::FileRecord& record : world.records()) {
            const std::string name(world.platform.paths.fileName(record.path));
            world.write(name, "spoilt");
            EXPECT_TRUE(files::FileRestore(world.vault(), world.context())
                            .restoreFile(record, files::RestoreChoice::DeleteChangedFile)
                            .restored)
                << name;
            EXPECT_TRUE(world.read(name) == contents[name]) << name;
        }
    }

    World world;
    std::map<std::string, std::string> contents;
    std::vector<std::string> left;
};

TEST_F(PasswordChange, BringsEverySealedFileAlong) {
    const crypto::ChainValues chains;
    const std::map<std::string, crypto::ChainValue> texts = {
        {world.data("Checking Schedule/Database Checking Schedule"), chains.ScheduleIV},
        {world.data("Checking Schedule/Scheduled Checking Log File"), chains.LogIV},
        {world.data("Checking Schedule/Scheduled Checking Log File~"), chains.LogIV},
        {world.data("Permissions"), chains.LogIV},
        {world.data("DirChk123456789z"), chains.IndexIV},
        {world.data("ServsChk123456789z"), chains.IndexIV},
        {world.path("a saved report"), chains.IndexIV},
        {world.databasePath("dbD"), crypto::PathIV(world.databasePath("dbD"))},
        {world.databasePath("dbBn"), crypto::PathIV(world.databasePath("dbBn"))}};
    for (const auto& [path, chain] : texts)
        seal(path, "what " + path + " says\x7F\r\n", chain);
    for (const std::string& path : store::siblingFiles(store::DatabaseKind::Numbered, world.databasePath())) {
        if (!world.machine.files.status(path, platform::Follow::No)) seal(path, "", crypto::PathIV(path));
        store::ComponentIndex(world.vault()).put({{path, store::digestFile(world.machine.files, path)}});
    }
    store::RecentList recent(world.configuration(), world.vault().session);
    recent.opened(world.databasePath(), store::DatabaseIndex(world.vault()));
    world.check();
    const auto before = store::DatabaseIndex(world.vault()).records();
    change({world.path("a saved report")});
    for (const auto& [path, chain] : texts)
        EXPECT_THAT(unsealed(path, chain), testing::StartsWith("what " + path + " says\x7F\r\n"));
    const auto records = store::DatabaseIndex(world.vault()).records();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].lastCheck, before[0].lastCheck);
    EXPECT_NE(records[0].fileDigest, before[0].fileDigest);
    EXPECT_EQ(readWholeFile(world.databasePath()), readWholeFile(world.databasePath("db~")));
    EXPECT_EQ(world.open("empty"), OpenResult::Opened);
    EXPECT_EQ(world.check().counts().identical, 7U);
    expectRestores();
    EXPECT_THAT(store::RecentList(world.configuration(), world.vault().session).paths(records),
                ElementsAre(world.databasePath()));
    EXPECT_TRUE(left.empty());
}

// The new files are those that sealing the plain text under the new password gives.
TEST_F(PasswordChange, GivesTheBytesOfASealingUnderTheNewPassword) {
    const std::string list = unsealed(pathOf("Backup Index 1"), crypto::BackupIV(pathOf("Backup Index 1")));
    const std::string container = readWholeFile(pathOf("Backup File 1"));
    change();
    seal(world.path("again"), list, crypto::BackupIV(pathOf("Backup Index 1")));
    EXPECT_TRUE(readWholeFile(world.path("again")) == readWholeFile(pathOf("Backup Index 1")));
    const std::string now = readWholeFile(pathOf("Backup File 1"));
    ASSERT_EQ(now.size(), container.size());
    EXPECT_NE(now, container);
    const std::size_t plainAt = 3 * 16;  // 1, 15 and 16 bytes take a block each
    EXPECT_EQ(now.substr(plainAt, 10), "not sealed");
    seal(world.path("piece"), std::string(700'001, 's'), crypto::BackupIV(pathOf("Backup Index 1")));
    EXPECT_TRUE(now.ends_with(readWholeFile(world.path("piece"))));
}

TEST_F(PasswordChange, AsksUntilTheEntryIsRight) {
    const auto before = everything();
    ScriptedPasswordChange dialog;
    dialog.entries = {{"wrong", "a", "b"}, {kOld, "new", "now"}, {kOld, "a*", "a*"}, {kOld, kOld, "x"}};
    world.machine.ui.answers = {false};
    EXPECT_EQ(core::changePassword(world.run(), dialog, {}).result, PasswordChangeResult::Left);
    EXPECT_THAT(dialog.shown, ElementsAre("///", "//b/", "///", std::string(kOld) + "///",
                                          std::string(kOld) + "/" + kOld + "/x/"));
    std::vector<std::string> said;
    for (const auto& message : world.machine.ui.messages)
        said.push_back(message.text);
    EXPECT_THAT(said,
                ElementsAre("The current password is incorrect!",
                            "The new password and the confirmation of the new password are not the same!",
                            "A password cannot hold the character \"*\"."));
    EXPECT_TRUE(world.machine.ui.saw(
        "The current password and the new password are the same.\nDo you want to retain your current "
        "password?"));
    dialog.entries = {{kOld, kOld, "whatever"}};
    world.machine.ui.answers = {true};
    EXPECT_EQ(core::changePassword(world.run(), dialog, {}).result, PasswordChangeResult::Retained);
    expectUnchanged(before);
}

TEST_F(PasswordChange, AsksForSavedReports) {
    const crypto::ChainValue chain = crypto::ChainValues().IndexIV;
    seal(world.path("report"), "a line\x7FR\x7F\r\n", chain);
    world.write("letter", "Dear Sir, a letter of sixteen bytes or of thirty-two\n");
    const bool hasLink = makeLink(world.path("report"), world.path("link"));
    ScriptedPasswordChange dialog;
    dialog.entries = {{kOld, kNew, kNew}};
    dialog.reports = {world.path("letter"), world.path("missing"), world.path(hasLink ? "link" : "letter"),
                      world.path("report"), world.path("report")};
    world.machine.ui.answers = {true, true, true, true, true, false};
    EXPECT_EQ(core::changePassword(world.run(), dialog, {}).result, PasswordChangeResult::Changed);
    EXPECT_EQ(unsealed(world.path("report"), chain), "a line\x7FR\x7F\r\n");
    EXPECT_EQ(world.read("letter"), "Dear Sir, a letter of sixteen bytes or of thirty-two\n");
    EXPECT_TRUE(
        world.machine.ui.saw(world.path("letter") +
                             " does not appear to be a Corvalence report that the current password opens."));
}

// The last sealed block ends with whatever stood in memory: control characters and line feeds by chance.
TEST_F(PasswordChange, KnowsShortTextsWhateverTheirLastBlockEndsWith) {
    for (std::size_t length = 3; length < 200; ++length) {
        seal(world.path("report"), std::string(length - 2, 'r') + "\r\n", crypto::ChainValues().IndexIV);
        EXPECT_EQ(core::findReportFault(world.vault(), world.path("report")), std::nullopt) << length;
    }
}

// Its digest in the index stays, so that it is told afterwards as it was before.
TEST_F(PasswordChange, NeverBlessesAChangedDatabase) {
    world.add({"1"}, "empty");
    flipByte(world.databasePath(), 100);
    flipByte(world.databasePath("empty"), 20);
    flipByte(world.databasePath("empty~"), 60);
    change();
    world.machine.ui.answers = {true, true};
    EXPECT_EQ(world.open("empty"), OpenResult::Refused);
    EXPECT_EQ(world.open(), OpenResult::Restored);
    expectRestores();
}

TEST_F(PasswordChange, BringsALostDatabasesBackupAlong) {
    fs::remove(world.databasePath());
    change();
    EXPECT_FALSE(fs::exists(world.databasePath()));
    world.machine.ui.answers = {true};
    EXPECT_EQ(world.open(), OpenResult::Restored);
    expectRestores();
}

TEST_F(PasswordChange, LeavesAndTellsWhatIsNotItsOwn) {
    world.create("x.y");
    world.add({"1"}, "x.y");
    fs::rename(pathOf("Backup Index 3"), world.path("lost"));
    world.add({"15"}, "x.y");  // sets the container aside that has no list any more
    writeWholeFile(world.databasePath("dbS"), "sixteen bytes...");     // at the name of a component
    writeWholeFile(world.databasePath("empty"), "no whole blocks");    // damaged, and told as changed
    writeWholeFile(world.databasePath("x~.y"), std::string(64, 'f'));  // at the place of a backup database
    fs::copy_file(world.databasePath(), world.databasePath("db%"));    // made under another suffix
    const std::vector<std::string> expected = {world.databasePath("empty"), world.databasePath("x~.y"),
                                               world.databasePath("dbS"), world.databasePath("db%"),
                                               pathOf("Backup File 3.old")};
    std::vector<std::string> before;
    for (const std::string& path : expected)
        before.push_back(readWholeFile(path));
    change();
    EXPECT_THAT(left, testing::UnorderedElementsAreArray(expected));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(readWholeFile(expected[i]), before[i]) << expected[i];
        EXPECT_THAT(world.machine.ui.transcript(), HasSubstr(expected[i] + " "));
    }
    EXPECT_EQ(world.open("x.y"), OpenResult::Opened);
    EXPECT_EQ(world.open("empty"), OpenResult::Refused);
}

// Another suffix brought the backup of one to the place of the other.
TEST_F(PasswordChange, SealsAFileThatTwoDatabasesClaimOnce) {
    world.set("Config2", "0");
    world.create("db2");
    world.add({"17"}, "db2");
    world.set("Config1", "2");
    world.set("Config2", "1");
    change();
    EXPECT_THAT(left, ElementsAre(world.databasePath("db~")));
    EXPECT_EQ(world.open("db2"), OpenResult::Opened);
    EXPECT_EQ(world.records("db2").size(), 1U);
    expectRestores();
}

TEST_F(PasswordChange, PutsAFileInThePlaceOfALink) {
    fs::rename(world.databasePath(), world.path("linked to"));
    if (!makeLink(world.path("linked to"), world.databasePath())) GTEST_SKIP() << "no links here";
    const std::string before = world.read("linked to");
    change();
    EXPECT_THAT(left, ElementsAre(world.databasePath()));
    EXPECT_EQ(world.read("linked to"), before);
    EXPECT_FALSE(fs::is_symlink(world.databasePath()));
    expectRestores();
}

TEST_F(PasswordChange, AsksBeforeItGoesOnWithoutDamagedBackups) {
    writeWholeFile(pathOf("Backup Index 1"), std::string(64, 'd'));
    writeWholeFile(world.data("Permissions"), "odd");
    for (const char* name : {"empty", "empty~"})
        fs::remove(world.databasePath(name));
    const auto before = everything();
    EXPECT_EQ(world.changePassword(kNew).result, PasswordChangeResult::Declined);
    EXPECT_THAT(world.machine.ui.transcript(),
                HasSubstr("\n" + pathOf("Backup Index 1") + "\n" + world.data("Permissions") +
                          "\n\nThese databases are not there to be brought to the new password:\n\n" +
                          world.databasePath("empty") + "\n\nThe new"));
    expectUnchanged(before);
    world.machine.ui.answers = {false, true};
    change();
    EXPECT_THAT(
        left, ElementsAre(pathOf("Backup Index 1"), world.data("Permissions"), world.databasePath("empty")));
    EXPECT_EQ(readWholeFile(pathOf("Backup Index 1")), std::string(64, 'd'));
    EXPECT_EQ(world.check().counts().identical, 7U);
}

// An installation without a database opens with every password, also with a mistyped one.
TEST_F(PasswordChange, SpoilsNothingUnderAPasswordThatNothingProved) {
    const std::string log = world.data("Checking Schedule/Scheduled Checking Log File");
    const std::string text = "checked\x7F\r\n";
    seal(log, text, crypto::ChainValues().LogIV);
    for (const char* name : {"db", "empty"})
        store::DatabaseIndex(world.vault()).removeRecord(world.databasePath(name));
    const std::string before = readWholeFile(log);
    world.password.password = "open sesam";
    ASSERT_EQ(world.start(), StartResult::Ready);
    EXPECT_EQ(world.changePassword(kNew).result, PasswordChangeResult::Declined);
    EXPECT_THAT(world.machine.ui.transcript(), HasSubstr(log));
    EXPECT_EQ(readWholeFile(log), before);
    world.password.password = kOld;
    ASSERT_EQ(world.start(), StartResult::Ready);
    EXPECT_EQ(world.changePassword(kNew).result, PasswordChangeResult::Changed);
    world.password.password = kNew;
    ASSERT_EQ(world.start(), StartResult::Ready);
    EXPECT_TRUE(unsealed(log, crypto::ChainValues().LogIV).starts_with(text));
}

TEST_F(PasswordChange, BringsWhatIsLeftOfACutContainerAlong) {
    const std::string container = readWholeFile(pathOf("Backup File 1"));
    writeWholeFile(pathOf("Backup File 1"), container.substr(0, container.size() - 300'001));
    change();
    EXPECT_EQ(fs::file_size(pathOf("Backup File 1")), container.size() - 300'001);
    EXPECT_TRUE(world.restore("17").restored);
    EXPECT_FALSE(world.restore("700001").restored);
    EXPECT_TRUE(left.empty());
}

TEST_F(PasswordChange, NeedsRoomForASecondCopyOfEverything) {
    const auto before = everything();
    world.machine.status.room = 700'000;
    const auto failure = failureOf([&] { world.changePassword(kNew); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->cause(), base::Cause::DiskFull);
    EXPECT_THAT(failure->what(), HasSubstr("There is not enough room to change the password"));
    expectUnchanged(before);
}

TEST_F(PasswordChange, ChangesNothingWhereItIsCancelledOrAFileCannotBeReadBack) {
    const auto before = everything();
    for (const std::uint64_t question : {1U, 5U, 9U, 14U}) {
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + question;
        EXPECT_EQ(world.changePassword(kNew).result, PasswordChangeResult::Cancelled) << question;
        world.machine.ui.cancelAt.reset();
        expectUnchanged(before);
    }
    {
        const auto held = world.machine.system.files.openExclusive(pathOf("Backup File 1"));
        EXPECT_EQ(failureOf([&] { world.changePassword(kNew); })->path(), pathOf("Backup File 1"));
    }
    expectUnchanged(before);
    for (const char* unreadable : {"Backup File 1123456789n", "Database Index123456789n", "db~"}) {
        world.machine.faults.failReads(unreadable);
        EXPECT_THROW(world.changePassword(kNew), base::FileFailure) << unreadable;
        world.machine.faults.clear();
        expectUnchanged(before);
    }
    writeWholeFile(world.databasePath("db123456789n"), "the user's");
    EXPECT_THROW(world.changePassword(kNew), crypto::NameTaken);
    fs::remove(world.databasePath("db123456789n"));
    expectUnchanged(before);
}

// Until then nothing may be written on what is partly sealed for the one password, partly for the other.
TEST_F(PasswordChange, IsCompletedByTheStartThatCanPutEveryFileInPlace) {
    const std::string place = world.databasePath("db~");
    world.machine.ui.meanwhile = [&] {
        if (!fs::exists(place + "123456789n") || fs::is_directory(place)) return;
        std::error_code held;  // while the pass itself reads it, where the system minds
        fs::remove(place, held);
        fs::create_directories(place + "/in the way", held);  // no file can be renamed over it
    };
    EXPECT_THROW(world.changePassword(kNew), crypto::MovesPending);
    world.machine.ui.meanwhile = {};
    EXPECT_THAT(world.machine.ui.transcript(), HasSubstr("The next start completes it"));
    world.password.other = kNew;
    ASSERT_EQ(world.start(), StartResult::Ready);
    EXPECT_THROW(world.create("another"), base::FileFailure);
    fs::remove_all(place);
    world.password.password = kNew;
    ASSERT_EQ(world.start(), StartResult::Ready);
    EXPECT_TRUE(readWholeFile(place) == readWholeFile(world.databasePath()));
    EXPECT_EQ(world.open("empty"), OpenResult::Opened);
    expectRestores();
    EXPECT_TRUE(world.leftovers().empty());
}

}  // namespace
}  // namespace corvalence::test
