#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "console.h"

namespace corvalence::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class WrongUsage : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(WrongUsage, endsWithTwoAndAWordOnStandardError) {
    Console console;
    console.begin();
    const Outcome outcome = console.run(GetParam());
    EXPECT_EQ(outcome.code, 2);
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_THAT(outcome.err, testing::Not(IsEmpty()));
}

INSTANTIATE_TEST_SUITE_P(
    All, WrongUsage,
    testing::Values(std::vector<std::string>{}, std::vector<std::string>{"bogus"},
                    std::vector<std::string>{"check"}, std::vector<std::string>{"check", "db", "more"},
                    std::vector<std::string>{"check", "db", "--on-change", "explode"},
                    std::vector<std::string>{"check", "db", "--changed-file", "keep"},
                    std::vector<std::string>{"check", "db", "--bogus"},
                    std::vector<std::string>{"check", "nodb"}, std::vector<std::string>{"add", "db"},
                    std::vector<std::string>{"restore", "db"},
                    std::vector<std::string>{"create", "whole-world", "x"},
                    std::vector<std::string>{"create", "services", "x", "--backups", "none"},
                    std::vector<std::string>{"check", "db", "--components", "sounds"},
                    std::vector<std::string>{"run"},
                    std::vector<std::string>{"create", "file-contents", "x", "--digest", "crc"},
                    std::vector<std::string>{"databases", "--wait", "-1"},
                    std::vector<std::string>{"databases", "--home", ""}, std::vector<std::string>{"config"},
                    std::vector<std::string>{"config", "get", "Config99"}));

TEST(Refusals, helpAndVersionNeedNothing) {
    Console console;
    EXPECT_EQ(console.done({"--version"}).out, "corvalencectl " CORVALENCE_VERSION "\n");
    const std::string help = console.done({"--help"}).out;
    for (const char* command : {"init", "create", "databases", "details", "files", "add", "check", "restore",
                                "delete", "config", "reset"})
        EXPECT_THAT(help, HasSubstr(std::string("\n  ") + command + " "));
    EXPECT_THAT(console.done({"check", "--help"}).out, HasSubstr("--on-change"));
    EXPECT_FALSE(console.folder.has("home"));
}

TEST(Refusals, onlyInitMakesAnInstallation) {
    Console console;
    for (const std::vector<std::string>& command : {std::vector<std::string>{"databases"},
                                                    {"check", "db"},
                                                    {"config", "list"},
                                                    {"config", "get", "Config1"},
                                                    {"config", "set", "Config1", "+"},
                                                    {"reset", "--yes"}}) {
        const Outcome outcome = console.run(command);
        EXPECT_EQ(outcome.code, 3) << command[0];
        EXPECT_THAT(outcome.err, HasSubstr("corvalencectl init\n"));
    }
    EXPECT_FALSE(console.folder.has("home"));
    EXPECT_THAT(console.run({"--home", "elsewhere", "databases"}).err,
                HasSubstr("corvalencectl --home elsewhere init"));
    console.done({"--home", "elsewhere", "init"});
    EXPECT_TRUE(console.folder.has("files/elsewhere/settings.json"));
}

TEST(Refusals, initTouchesNothingThatIsThere) {
    Console console;
    console.write("a", "1");
    console.begin();
    const std::string settings = console.folder.read("home/settings.json");
    const Outcome again = console.run({"init"});
    EXPECT_EQ(again.code, 3);
    EXPECT_THAT(again.err, HasSubstr(console.home()));
    EXPECT_EQ(console.folder.read("home/settings.json"), settings);

    std::filesystem::remove(console.home("settings.json"));
    EXPECT_EQ(console.run({"init"}).code, 3);  // its data are in the way
    EXPECT_FALSE(console.folder.has("home/settings.json"));

    console.folder.write("home/settings.json", "{ broken");
    EXPECT_THAT(console.run({"databases"}).err, HasSubstr("settings cannot be read"));
    console.folder.write("home/settings.json", settings);
    console.done({"check", "db"});
}

TEST(Refusals, aCopyOrAMovedInstallationIsNotWorkedOn) {
    Console console;
    console.write("a", "1");
    console.begin();
    const auto expectRefusals = [&](const std::string& root, const std::string& hint) {
        for (const std::vector<std::string>& command : {std::vector<std::string>{"databases"},
                                                        {"check", "db"},
                                                        {"init"},
                                                        {"config", "get", "Config1"},
                                                        {"config", "set", "data-root", root},
                                                        {"reset", "--yes"}}) {
            std::vector<std::string> arguments = {"--home", root};
            arguments.insert(arguments.end(), command.begin(), command.end());
            const Outcome outcome = console.run(arguments);
            EXPECT_EQ(outcome.code, 3) << command[0];
            EXPECT_THAT(outcome.err,
                        testing::AllOf(HasSubstr("copied or moved from " + console.home()), HasSubstr(hint)));
        }
    };
    copyFolder(console.home(), console.path("copy"));
    expectRefusals(console.path("copy"), "corvalencectl --home " + console.home());
    console.done({"--home", console.home(), "check", "db"});

    std::filesystem::rename(console.folder / "home", console.path("moved"));
    expectRefusals(console.path("moved"), "a symbolic link at that place");
    if (makeLink(console.path("moved"), console.folder / "home")) {
        console.done({"--home", console.path("moved"), "check", "db"});
        console.done({"--home", console.home(), "check", "db"});
    }
}

TEST(Refusals, ofAnIndexThatNoPasswordOpens) {
    Console console;
    console.write("a", "one");
    console.begin();
    const std::string index = console.home() + "/Backup Files/Database Index";
    const std::string whole = readWholeFile(index);
    writeWholeFile(index, whole + "x");
    const Outcome refused = console.run({"databases"});
    EXPECT_EQ(refused.code, 3);
    EXPECT_THAT(refused.err, HasSubstr("Database Index has been damaged: no password opens it."));
    EXPECT_THAT(refused.err, Not(HasSubstr("refused")));
    const Outcome document = console.run({"--json", "databases"});
    EXPECT_THAT(document.json()["error"]["message"].get<std::string>(), HasSubstr("has been damaged"));
    EXPECT_EQ(readWholeFile(index), whole + "x");
    console.done({"--yes", "reset"});
    console.done({"create", "file-contents", "another"});
}

TEST(Refusals, forAdministratorsAndOneAtATime) {
    Console console;
    console.process.hasRights = false;
    EXPECT_EQ(console.run({"init"}).code, 3);
    EXPECT_FALSE(console.folder.has("home"));
    console.process.hasRights = true;
    console.begin();
    console.process.hasRights = false;
    const Outcome refused = console.run({"databases"});
    EXPECT_EQ(refused.code, 3);
    EXPECT_THAT(refused.err, HasSubstr("Administrator account"));
    console.process.hasRights = true;

    const auto held = console.system.process.lockInstallation(console.home(), std::chrono::milliseconds(0));
    for (const std::vector<std::string>& command : {std::vector<std::string>{"databases"},
                                                    {"reset"},
                                                    {"config", "set", "Config5", "0"},
                                                    {"databases", "--quiet"}}) {
        std::vector<std::string> impatient = command;
        impatient.insert(impatient.end(), {"--wait", "0"});
        const Outcome outcome = console.run(impatient);
        EXPECT_EQ(outcome.code, 3);
        EXPECT_EQ(outcome.err, "Corvalence is already running.\n");
    }
    EXPECT_EQ(console.done({"config", "get", "Config5"}).out, "1\n");  // reading waits for nobody
}

class ChangedDatabase : public testing::Test {
  protected:
    ChangedDatabase() {
        console.write("a", "1");
        console.begin();
    }
    void spoil(const std::string& name) {
        std::string bytes = console.folder.read("home/Databases/" + name);
        bytes[bytes.size() / 2] ^= 1;
        console.folder.write("home/Databases/" + name, bytes);
    }
    Console console;
};

TEST_F(ChangedDatabase, isRefusedAndRecoveredFromItsBackup) {
    spoil("db");
    const Outcome refused = console.run({"check", "db"});
    EXPECT_EQ(refused.code, 3);
    EXPECT_THAT(refused.err,
                HasSubstr("has been changed!\n\nWould you like to open the backup database?  [no]"));
    EXPECT_THAT(refused.out, IsEmpty());
    const Outcome listed = console.run({"databases", "--json"});
    EXPECT_EQ(listed.code, 1);
    EXPECT_EQ(listed.json().at("databases")[0].at("state"), "changed");

    const Outcome recovered = console.done({"check", "db", "--yes"});
    EXPECT_THAT(recovered.err, HasSubstr("The backup database is unchanged."));
    EXPECT_THAT(recovered.out, HasSubstr("Files Identical: 1\n"));
    console.done({"check", "db"});
}

TEST_F(ChangedDatabase, opensNothingWhereItsBackupIsChangedToo) {
    spoil("db");
    spoil("db~");
    for (const char* command : {"check", "files", "details"}) {
        const Outcome outcome = console.run({command, "db", "--yes"});
        EXPECT_EQ(outcome.code, 3) << command;
        EXPECT_THAT(outcome.err, HasSubstr("has also been changed!"));
    }
    EXPECT_EQ(console.run({"add", "db", "a", "--yes"}).code, 3);
    EXPECT_EQ(console.run({"restore", "db", "a", "--yes"}).code, 3);
    console.done({"delete", "db", "--yes"});
    EXPECT_THAT(console.done({"databases"}).out, IsEmpty());
}

TEST_F(ChangedDatabase, aMissingOneIsToldAndCanBeDeleted) {
    std::filesystem::remove(console.home("Databases/db"));
    EXPECT_EQ(console.run({"databases", "--json"}).json().at("databases")[0].at("state"), "missing");
    EXPECT_THAT(console.run({"check", "db"}).err, HasSubstr("does not exist!"));
    std::filesystem::create_directory(console.home("Databases/db"));
    EXPECT_EQ(console.run({"databases"}).code, 1);  // nor one that cannot be read
    std::filesystem::remove(console.home("Databases/db"));
    console.done({"delete", "db", "--yes"});
    EXPECT_FALSE(console.folder.has("home/Databases/db~"));
}

TEST_F(ChangedDatabase, aCopyIsNoDatabase) {
    std::filesystem::copy(console.home("Databases/db"), console.path("copy"));
    for (const char* command : {"check", "files", "details"}) {
        const Outcome outcome = console.run({command, "copy"});
        EXPECT_EQ(outcome.code, 3) << command;
        EXPECT_THAT(outcome.err, HasSubstr(console.path("copy") + " is either a backup database or an old"));
    }
    EXPECT_EQ(console.run({"delete", "copy", "--yes"}).code, 2);
    EXPECT_TRUE(console.folder.has("files/copy"));
}

TEST_F(ChangedDatabase, aNameStandsForADatabaseWhereItIsTheOnlyOne) {
    std::filesystem::create_directory(console.path("other"));
    console.done({"create", "file-contents", "db", "--location", "other"});
    const Outcome unclear = console.run({"check", "db"});
    EXPECT_EQ(unclear.code, 2);
    EXPECT_THAT(unclear.err, testing::AllOf(HasSubstr("\n  " + console.home("Databases/db") + "\n"),
                                            HasSubstr("\n  " + console.path("other/db") + "\n")));
    EXPECT_THAT(console.done({"details", console.home("Databases/./db")}).out, HasSubstr("listed: 1\n"));
    EXPECT_THAT(console.done({"details", "other/db"}).out, HasSubstr("listed: 0\n"));
    // In the folder of one of them its name is its path.
    console.process.folder = console.path("other");
    EXPECT_THAT(console.done({"details", "db"}).out, HasSubstr("listed: 0\n"));
}

TEST(Failures, endWithFourAndAReason) {
    Console console;
    console.write("a", "1");
    console.begin();
    const auto expectFailure = [&](const std::vector<std::string>& command, const std::string& reason) {
        const Outcome outcome = console.run(command);
        EXPECT_EQ(outcome.code, 4) << command[0];
        EXPECT_THAT(outcome.err, HasSubstr(reason));
    };
    expectFailure({"restore", "db", "never"}, "never is not listed in ");
    expectFailure({"create", "file-contents", "db"}, "already exists.");
    expectFailure({"create", "file-contents", "a/b"}, "should not contain");
    expectFailure({"create", "file-contents", "x", "--location", "none"}, "is not a valid location.");
    expectFailure({"--home", "a", "init"}, "a");
    console.done({"config", "set", "backup-files", "0"});
    console.write("b", "1");
    console.done({"add", "db", "b"});
    expectFailure({"restore", "db", "b"}, "was not backed up");
    console.outputFails = true;
    expectFailure({"files", "db"}, "could not be written to standard output");
    EXPECT_THAT(console.leftovers(), IsEmpty());
}

}  // namespace
}  // namespace corvalence::test
