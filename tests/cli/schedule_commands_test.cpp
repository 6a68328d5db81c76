#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "console.h"
#include "crypto/sealed_stream.h"
#include "memory_file.h"

namespace corvalence::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

class Unattended : public testing::Test {
  protected:
    Unattended() {
        console.write("a", "1");
        console.begin();
    }
    /// A sealed log, as a check leaves it.
    static void seal(const std::string& path, std::string_view text, std::string_view password = "secret") {
        const crypto::SessionKey key(password);
        MemoryFile file;
        crypto::SealWriter writer(file, key, crypto::ChainValues().LogIV);
        writer.write(base::bytesOf(text));
        writer.finish();
        writeWholeFile(path, std::string(file.bytes.begin(), file.bytes.end()));
    }
    std::string log(const std::string& end = {}) const {
        return console.home("Checking Schedule/Scheduled Checking Log File" + end);
    }
    std::string block(const std::string& change) const {
        return "\r\n12:30:05   29.2.2024\r\nDatabase: db checked.\r\n\r\n" + change + "\r\n" +
               std::string(85, '_') + "\r\n";
    }
    int code(std::vector<std::string> arguments) { return console.run(std::move(arguments)).code; }

    Console console;
};

TEST_F(Unattended, SchedulesDatabasesAndTellsThem) {
    const std::string db = console.home("Databases/db");
    console.done({"create", "file-contents", "empty"});
    Outcome added = console.done({"schedule", "add", "db"});
    EXPECT_EQ(added.out, db + " added to the schedule.\n");
    EXPECT_THAT(added.err, HasSubstr("No interval is set"));
    EXPECT_EQ(code({"schedule", "add", "db"}), 1);
    added = console.run({"schedule", "add", "empty"});
    EXPECT_EQ(added.code, 1);
    EXPECT_THAT(added.err, HasSubstr(" is an empty database."));
    EXPECT_EQ(code({"schedule", "add", console.path("a")}), 2);
    EXPECT_EQ(code({"schedule", "add", "none"}), 2);
    console.done({"check", "db"});
    EXPECT_EQ(console.done({"schedule", "list"}).out,
              "Check every 00:00:00, continuous, Auto Restore: off\n" + db + "\t12:30:05   29.2.2024\n");
    EXPECT_EQ(console.done({"schedule", "list", "--json"}).json(),
              (json{{"interval", "00:00:00"},
                    {"seconds", 0},
                    {"reaction", "continuous"},
                    {"auto_restore", "off"},
                    {"databases", {{{"path", db}, {"last_check", "2024-02-29T12:30:05Z"}}}},
                    {"damaged", json::array()},
                    {"torn", false},
                    {"missing", false}}));
    EXPECT_EQ(console.done({"schedule", "remove", "db"}).out, db + " removed from the schedule.\n");
    EXPECT_EQ(code({"schedule", "remove", "db"}), 2);
    EXPECT_EQ(code({"schedule", "remove"}), 2);
    console.done({"schedule", "add", "db"});
    console.done({"--yes", "delete", "db"});
    EXPECT_EQ(console.done({"schedule", "list", "--json"}).json().at("databases"), json::array());
}

TEST_F(Unattended, SetsIntervalAndReactionWithoutAPassword) {
    console.input.clear();
    EXPECT_EQ(console.done({"schedule", "interval", "1:02:03"}).out,
              "Check every 01:02:03, continuous, Auto Restore: off\n");
    EXPECT_EQ(console.done({"schedule", "interval", "--json"}).json().at("seconds"), 3723);
    EXPECT_EQ(code({"schedule", "interval", "25:00:00"}), 2);
    console.done({"schedule", "reaction", "--auto-restore", "delete"});
    EXPECT_EQ(console.done({"config", "get", "Config29"}).out, "0\n");
    EXPECT_EQ(console.done({"schedule", "reaction", "standard", "--auto-restore", "off"}).out,
              "Check every 01:02:03, standard, Auto Restore: off\n");
    EXPECT_EQ(code({"schedule", "reaction", "--auto-restore", "move"}), 2);
    EXPECT_EQ(code({"schedule", "reaction", "sometimes"}), 2);
    EXPECT_EQ(console.done({"config", "get", "Config11"}).out, "P\n");
}

TEST_F(Unattended, TellsADamagedScheduleAndMendsItWhenToldTo) {
    console.done({"schedule", "add", "db"});
    const std::string path = console.home("Checking Schedule/Database Checking Schedule");
    const std::string sealed = readWholeFile(path);
    writeWholeFile(path, sealed + "x");
    const Outcome listed = console.run({"schedule", "list"});
    EXPECT_EQ(listed.code, 1);
    EXPECT_THAT(listed.err, HasSubstr("The schedule is damaged: its end cannot be read."));
    EXPECT_THAT(listed.out, HasSubstr("db\tUnchecked"));
    EXPECT_EQ(code({"schedule", "remove", "db"}), 4);
    console.done({"schedule", "remove", "--damaged"});
    console.done({"schedule", "list"});
    std::filesystem::remove(path);
    EXPECT_THAT(console.run({"schedule", "list"}).err, HasSubstr("The schedule is missing."));
    console.done({"schedule", "add", "db"});
    console.done({"schedule", "list"});
}

TEST_F(Unattended, ShowsALogWithSignsAndOnATerminalWithColours) {
    seal(log(), block("File added:   /a\x1b[2J\r\nFile removed:   /b\r\nFile moved to Recycle Bin:   /c\r\n"
                      "/d has been changed!\r\nFile name: d\r\n"));
    const Outcome shown = console.done({"log", "show"});
    EXPECT_EQ(shown.out,
              "  \n  12:30:05   29.2.2024\n= Database: db checked.\n  \n+ File added:   /a [2J\n"
              "- File removed:   /b\n~ File moved to Recycle Bin:   /c\n! /d has been changed!\n"
              "* File name: d\n  \n  " +
                  std::string(85, '_') + "\n");
    const json document = console.done({"log", "show", "--json"}).json();
    EXPECT_EQ(document.at("lines").at(4),
              (json{{"icon", 6}, {"mark", "added"}, {"text", "File added:   /a [2J"}, {"truncated", false}}));
    EXPECT_TRUE(document.at("valid"));
    console.terminal.isThere = true;
    console.terminal.secrets = {"secret"};
    EXPECT_THAT(console.done({"log", "show"}).out, HasSubstr("\x1b[31m- File removed:   /b\x1b[0m\n"));
    EXPECT_TRUE(console.leftovers().empty());
}

TEST_F(Unattended, TruncatesLargeValuesUnlessAskedForThem) {
    seal(log("~"), block(std::string(20000, 'v')));
    Outcome shown = console.done({"log", "session"});
    EXPECT_THAT(shown.err, HasSubstr("Values have been truncated to 10KB"));
    EXPECT_LT(shown.out.size(), 11000U);
    shown = console.done({"log", "session", "--full"});
    EXPECT_EQ(shown.err, "");
    EXPECT_GT(shown.out.size(), 20000U);
    EXPECT_GT(console.done({"--yes", "log", "session"}).out.size(), 20000U);
}

TEST_F(Unattended, CollectsSessionsInTheLogFileAndEmptiesIt) {
    seal(log("~"), block("one"));
    console.done({"log", "session", "--append"});
    seal(log("~"), block("two"));
    console.done({"log", "session", "--append"});
    const std::string both = console.done({"log", "show"}).out;
    EXPECT_THAT(both, HasSubstr("one"));
    EXPECT_THAT(both, HasSubstr("two"));
    EXPECT_EQ(console.done({"log", "session"}).out, "");
    seal(log("~"), block("three"));
    console.done({"log", "session", "--overwrite"});
    EXPECT_THAT(console.done({"log", "show"}).out, Not(HasSubstr("two")));
    EXPECT_EQ(code({"log", "session", "--append", "--overwrite"}), 2);
    EXPECT_EQ(code({"log", "delete"}), 5);
    EXPECT_THAT(console.done({"log", "show"}).out, HasSubstr("three"));
    console.done({"--yes", "log", "delete"});
    EXPECT_EQ(console.done({"log", "show"}).out, "");
}

TEST_F(Unattended, ExportsTheSealedLogAndNeverOverAnOwnFile) {
    seal(log(), block("one"));
    console.done({"log", "export", console.path("log")});
    EXPECT_EQ(console.read("log"), readWholeFile(log()));
    EXPECT_EQ(code({"log", "export", console.path("log")}), 5);
    console.done({"--yes", "log", "export", "--session", console.path("log")});
    EXPECT_EQ(console.read("log"), "");
    const std::string index = console.home("Backup Files/Database Index");
    const std::string before = readWholeFile(index);
    for (const std::string& own :
         {index, log("~"), console.home("Databases/db"), console.home("settings.json")})
        EXPECT_EQ(code({"--yes", "log", "export", own}), 4) << own;
    EXPECT_EQ(readWholeFile(index), before);
}

TEST_F(Unattended, ImportsALogOfAnotherPasswordWithThatPasswordOnly) {
    const std::string foreign = console.path("foreign");
    seal(foreign, block("theirs"), "their password");
    const std::string right = console.write("right", "their password\n");
    const std::string wrong = console.write("wrong", "secret\n");
    EXPECT_THAT(console.done({"log", "import", foreign, "--log-password-file", right}).out,
                HasSubstr("theirs"));
    for (const auto& arguments :
         {std::vector<std::string>{"log", "import", foreign, "--log-password-file", wrong},
          std::vector<std::string>{"log", "import", foreign},
          std::vector<std::string>{"log", "import", right}}) {
        const Outcome refused = console.run(arguments);
        EXPECT_EQ(refused.code, 3);
        EXPECT_EQ(refused.out, "");
        EXPECT_THAT(refused.err, HasSubstr(" was not opened"));
    }
    EXPECT_EQ(code({"log", "import", console.path("none")}), 4);
    console.terminal.isThere = true;
    console.terminal.secrets = {"secret", "no", "their password"};
    console.terminal.lines = {"y", "y"};
    EXPECT_THAT(console.done({"log", "import", foreign}).out, HasSubstr("theirs"));
    EXPECT_THAT(console.terminal.prompts, HasSubstr("Would you like to try an alternative password?"));
    console.terminal.secrets = {"secret"};
    console.terminal.lines = {"n"};
    EXPECT_EQ(code({"log", "import", foreign}), 3);
    // The installation's own password opens its own exported log.
    console.terminal.isThere = false;
    seal(foreign, block("ours"));
    EXPECT_THAT(console.done({"log", "import", foreign}).out, HasSubstr("ours"));
}

}  // namespace
}  // namespace corvalence::test
