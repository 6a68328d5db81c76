#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/console_user_interface.h"
#include "console.h"

namespace corvalence::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// A user at a terminal, with three files of which two were changed.
class AtATerminal : public testing::Test {
  protected:
    AtATerminal() {
        for (const char* name : {"a", "b", "c"})
            console.write(name, "old");
        console.begin();
        console.write("a", "new");
        console.write("b", "new");
        console.terminal.isThere = true;
    }
    Outcome run(std::vector<std::string> arguments, std::deque<std::string> lines) {
        console.terminal.secrets = {"secret"};
        console.terminal.lines = std::move(lines);
        console.terminal.prompts.clear();
        return console.run(std::move(arguments));
    }
    std::string contents() { return console.read("a") + " " + console.read("b"); }

    Console console;
};

TEST_F(AtATerminal, everyChangedFileIsAskedAbout) {
    const Outcome outcome = run({"check", "db"}, {"4", "1", "2"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(contents(), "old new");
    EXPECT_FALSE(console.folder.has("home/Changed Files/a.CHANGED"));
    EXPECT_EQ(console.terminal.prompts, "Password: Choice [1]: Choice [2]: Choice [1]: ");
    for (const char* text :
         {"a has been changed! \n", "  * Digest value now:", "Database unchecked until now.",
          "  1  Ignore and continue", "  2  Update database with new details. Make this",
          "  3  Update database with new details. Leave", "  4  Restore the original file from",
          "File restore from backup.\n", "a successfully restored.\n"})
        EXPECT_THAT(outcome.err, HasSubstr(text));
    // What stands on the screen already is not told twice.
    EXPECT_THAT(outcome.out,
                HasSubstr("Action: Restored.\n    Action: Database updated, new backup.\n\nChecking"));
    EXPECT_EQ(run({"check", "db"}, {}).code, 0);
}

TEST_F(AtATerminal, aChangedFileIsAnalysedBeforeTheChoice) {
    console.write("b", std::string(128 * 20, 'n'));
    const Outcome outcome = run({"check", "db"}, {"t", "h", "1", "t", "1"});
    EXPECT_EQ(console.terminal.prompts,
              "Password: Choice [1]: Choice [1]: Choice [1]: Choice [1]: Choice [1]: ");
    for (const char* text : {"  t  Further analysis [Text Display]\n  h  Further analysis [Hex Display]\n",
                             "now\t0\tnew\nbackup\t0\told\n1 of 1 rows differ.\n",
                             "now\t0\t6E 65 77\tnew\nbackup\t0\t6F 6C 64\told\n1 of 1 rows differ.\n",
                             "now only\t1152\t", "n\nMore rows differ. All of them are shown by:"})
        EXPECT_THAT(outcome.err, HasSubstr(text));
    EXPECT_THAT(outcome.err, Not(HasSubstr("now only\t1280\t")));
}

TEST_F(AtATerminal, resultsInAFileAreWhole) {
    console.terminal.showsOutput = false;
    const Outcome outcome = run({"check", "db"}, {"", "1"});
    EXPECT_THAT(outcome.out, HasSubstr("b has been changed!\n"));
    EXPECT_THAT(outcome.out, HasSubstr("  * Digest value now:"));
    const auto json = run({"check", "db", "--json"}, {"4", "2", "3"}).json();
    EXPECT_EQ(json.at("files")[0].at("action"), "restored");
    EXPECT_EQ(json.at("files")[1].at("action"), "updated");
}

TEST_F(AtATerminal, noAnswerAndNoChoiceIgnore) {
    EXPECT_EQ(run({"check", "db"}, {"9", "x", "4"}).code, 1);  // and then the input ends
    EXPECT_EQ(console.terminal.prompts,
              "Password: Choice [1]: Choice [1]: Choice [1]: Choice [2]: Choice [1]: ");
    EXPECT_EQ(contents(), "new new");
    EXPECT_EQ(run({"check", "db", "--on-change", "ignore"}, {}).code, 1);
    EXPECT_EQ(console.terminal.prompts, "Password: ");
}

TEST_F(AtATerminal, aSignalAtTheQuestionAboutTheLastFileCancels) {
    console.write("c", "new");
    console.terminal.atEnd = [&] { console.process.cancelAt(1); };
    for (const std::deque<std::string>& lines :
         {std::deque<std::string>{"1", "1"}, std::deque<std::string>{"1", "1", "4"}}) {
        const Outcome outcome = run({"check", "db", "--json"}, lines);
        console.process.cancelAt(kNever);
        EXPECT_EQ(outcome.code, 5);
        const auto json = outcome.json();
        EXPECT_EQ(json.at("cancelled"), true);
        EXPECT_EQ(json.at("checked"), 3);
        EXPECT_EQ(json.at("files")[2].at("action"), "ignored");
        EXPECT_EQ(console.read("c"), "new");
    }
    EXPECT_EQ(run({"check", "db", "--on-change", "ignore", "--json"}, {}).json().at("changed"), 3);
}

TEST_F(AtATerminal, theListOfDatabasesIsNotRestoredOverItself) {
    run({"add", "db", console.home("Backup Files/Database Index")}, {});
    run({"check", "db", "--on-change", "restore"}, {});
    const Outcome outcome = run({"check", "db"}, {"4", ""});
    EXPECT_THAT(outcome.err, HasSubstr("  1  Ignore"));
    EXPECT_THAT(outcome.err, Not(HasSubstr("  2  Update")));
}

TEST_F(AtATerminal, questionsTakeYesForAnAnswer) {
    const Outcome unwanted = run({"delete", "db"}, {""});
    EXPECT_EQ(unwanted.code, 0);  // an answer, as any other
    EXPECT_EQ(unwanted.out, "Nothing was deleted.\n");
    EXPECT_THAT(console.terminal.prompts,
                HasSubstr("Are you sure you would like to delete this database, its "
                          "backup, and the backups of the files listed within it? [y/N] "));
    EXPECT_EQ(run({"delete", "db"}, {"no"}).out, "Nothing was deleted.\n");
    EXPECT_THAT(run({"delete", "db"}, {"y"}).err, HasSubstr("successfully deleted."));
}

TEST_F(AtATerminal, aChangeRingsTheBellUnlessQuiet) {
    EXPECT_THAT(run({"check", "db", "--on-change", "ignore"}, {}).err, HasSubstr("\a"));
    EXPECT_THAT(run({"check", "db", "--on-change", "ignore", "--quiet"}, {}).err, testing::IsEmpty());
    run({"config", "set", "warning-sound", "3"}, {});
    EXPECT_THAT(run({"check", "db", "--on-change", "ignore"}, {}).err, Not(HasSubstr("\a")));
}

/// The user interface alone, with the time in the test's hands.
class ProgressOnALine : public testing::Test {
  protected:
    std::unique_ptr<cli::ConsoleUserInterface> make(bool quiet) {
        return std::make_unique<cli::ConsoleUserInterface>(terminal, process, clock, err,
                                                           cli::ConsoleUserInterface::Manners{quiet, false});
    }
    void wait() { clock.advance(std::chrono::milliseconds(100)); }

    SystemBackEnd system;
    ScriptedTerminal terminal;
    SignalledProcess process{system.process};
    FakeClock clock;
    std::ostringstream err;
};

TEST_F(ProgressOnALine, isRewrittenTenTimesASecondAtMost) {
    terminal.isThere = true;
    const auto ui = make(false);
    {
        const auto progress = ui->openProgress("Adding");
        for (int i = 0; i < 1000; ++i)
            progress->item({"/x/" + std::to_string(i)});
        EXPECT_EQ(err.str(), "");  // no time has passed
        wait();
        progress->label("12 Bytes.");
        EXPECT_EQ(err.str(), "\r12 Bytes.  /x/999\x1b[K");
        progress->bar(platform::Progress::kSteps / 2);
        wait();
        progress->item({"/" + std::string(200, 'a') + "\n\xC3\xA4/end", 1});
        const std::string line = err.str().substr(err.str().rfind('\r') + 1);
        EXPECT_EQ(line, "50%  12 Bytes.  ..." + std::string(79 - 16 - 3 - 7, 'a') + "\\n\xC3\xA4/end\x1b[K");
        err.str("");
        ui->message(platform::Icon::Warning, "told");
        EXPECT_EQ(err.str(), "\r\x1b[Ktold\n");
        wait();
        progress->bar(platform::Progress::kSteps);
    }
    EXPECT_TRUE(err.str().ends_with("\r\x1b[K"));
}

TEST_F(ProgressOnALine, isNowhereElse) {
    for (const bool quiet : {true, false}) {
        terminal.isThere = quiet;
        const auto progress = make(quiet)->openProgress("Adding");
        wait();
        progress->bar(1);
        progress->item({"/x", 1});
        progress->label("1 Byte.");
        EXPECT_FALSE(progress->cancelled());
    }
    EXPECT_EQ(err.str(), "");
    process.cancelAt(1);
    EXPECT_TRUE(make(true)->openProgress("")->cancelled());
}

TEST_F(ProgressOnALine, quietKeepsWarningsAndNamesAreHarmless) {
    const auto ui = make(true);
    ui->message(platform::Icon::Information, "nice to know");
    ui->message(platform::Icon::Warning, "Couldn't add \x1b]0;x\a\nReason: None.");
    EXPECT_EQ(err.str(), "Couldn't add \\x1b]0;x\\x07\nReason: None.\n");
    err.str("");
    // After a cancel signal nobody is asked, and the answer is the careful one.
    terminal.isThere = true;
    terminal.lines = {"y"};
    process.cancelAt(1);
    EXPECT_TRUE(ui->ask(platform::Icon::Warning, "Keep?", true));
    EXPECT_FALSE(ui->ask(platform::Icon::Warning, "Delete?", false));
    EXPECT_EQ(err.str(), "Keep? [yes]\nDelete? [no]\n");
}

}  // namespace
}  // namespace corvalence::test
