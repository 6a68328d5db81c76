#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console.h"
#include "crypto/sealed_file.h"

namespace corvalence::test {
namespace {

using testing::HasSubstr;

std::string repeated(std::string_view text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

struct Entry {
    std::string input;
    bool isTaken;
    std::string opens;  // what else opens the installation then
};

class FromStandardInput : public testing::TestWithParam<Entry> {};

TEST_P(FromStandardInput, theFirstLineIsThePassword) {
    Console console;
    console.done({"init"});
    console.input = GetParam().input;
    const Outcome outcome = console.run({"create", "file-contents", "db"});
    EXPECT_EQ(outcome.code, GetParam().isTaken ? 0 : 3) << outcome.err;
    if (!GetParam().isTaken) return;
    console.done({"databases"});
    console.input = GetParam().opens;
    console.done({"databases"});
    for (const char* wrong : {"other\n", "secre\n", "secret \n"}) {
        console.input = wrong;
        const Outcome refused = console.run({"databases"});
        EXPECT_EQ(refused.code, 3);
        EXPECT_EQ(refused.err, "refused\n");
        EXPECT_EQ(refused.out, "");
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, FromStandardInput,
    testing::Values(Entry{"secret\nmore\n", true, "secret"}, Entry{"\n", true, "\nx"},
                    Entry{"secret\r\n", true, "secret\r"}, Entry{"", false, ""}, Entry{"a*b\n", false, ""},
                    Entry{repeated("\xC3\xA4", 128) + "\n", true, repeated("\xC3\xA4", 128)},
                    Entry{repeated("\xC3\xA4", 129) + "\n", false, ""},
                    Entry{repeated("\xF0\x9F\x94\x91", 128), true, repeated("\xF0\x9F\x94\x91", 128)},
                    Entry{repeated("\xE4", 128), true, repeated("\xE4", 128) + "\n"},
                    Entry{repeated("\xE4", 129), false, ""}, Entry{repeated("x", 100'000), false, ""}));

TEST(Password, comesFromAFile) {
    Console console;
    console.done({"init"});
    console.write("password", "from a file\nsecond line\n");
    console.input = "";
    console.done({"create", "file-contents", "db", "--password-file", "password"});
    console.done({"--password-file", console.path("password"), "databases"});
    EXPECT_EQ(console.run({"databases"}).err, "no password was given\n");
    EXPECT_EQ(console.run({"databases", "--password-file", "none"}).code, 4);
    EXPECT_EQ(console.run({"databases", "--password-file", "."}).code,
              canBeNamed("\n") ? 3 : 4);  // a folder has no line, or cannot be opened at all
    console.input = "from a file\n";
    console.done({"databases", "--password-file", "-"});
    // The file comes before a terminal.
    console.terminal.isThere = true;
    console.done({"databases", "--password-file", "password"});
    EXPECT_EQ(console.terminal.prompts, "");
}

TEST(Password, isChosenTwiceOnATerminal) {
    Console console;
    console.done({"init"});
    console.terminal.isThere = true;
    console.terminal.secrets = {"one", "two", "a*", "a*", "open", "open"};
    const Outcome outcome = console.done({"create", "file-contents", "db"});
    EXPECT_THAT(outcome.err,
                HasSubstr("The two entries differ.\nA password cannot hold the character \"*\".\n"));
    EXPECT_EQ(console.terminal.prompts, repeated("New password: New password again: ", 3));
    // A refused one is asked for again without a word.
    console.terminal.prompts.clear();
    console.terminal.secrets = {"wrong", "wrong again", "open"};
    EXPECT_EQ(console.done({"databases"}).err, "");
    EXPECT_EQ(console.terminal.prompts, repeated("Password: ", 3));
    // The user leaves.
    console.terminal.secrets = {"wrong"};
    const Outcome left = console.run({"databases", "--password-file", "-"});
    EXPECT_EQ(left.code, 3);
    EXPECT_EQ(left.err, "no password was given\n");
}

/// A user who changes the password of an installation with a database.
class ChangingThePassword : public testing::Test {
  protected:
    ChangingThePassword() {
        console.write("a", "one");
        console.begin();
    }
    int codeWith(const std::string& password) {
        console.input = password + "\n";
        console.terminal.isThere = false;
        return console.run({"check", "db"}).code;
    }

    Console console;
};

TEST_F(ChangingThePassword, takesTheNextLinesOfTheInput) {
    console.input = "secret\nnew one\nnew one\n";
    const Outcome outcome = console.done({"password"});
    EXPECT_THAT(outcome.err, HasSubstr("Do you have any Corvalence reports that need to be re-encrypted with "
                                       "the new password? [no]\n"));
    EXPECT_THAT(outcome.err, testing::EndsWith("Password change successfully completed.\n"));
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(codeWith("secret"), 3);
    EXPECT_EQ(codeWith("new one"), 0);
    console.write("password", "new one\nthird\nthird");
    const auto json = console.done({"--password-file", "password", "--json", "password"}).json();
    EXPECT_EQ(json, nlohmann::json({{"changed", true}, {"left", nlohmann::json::array()}}));
    EXPECT_EQ(codeWith("third"), 0);
    EXPECT_THAT(console.leftovers(), testing::IsEmpty());
}

struct Refusal {
    const char* input;
    int code;
    const char* told;
};

class RefusedChange : public ChangingThePassword, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedChange, changesNothing) {
    const std::string index = readWholeFile(console.home("Backup Files/Database Index"));
    console.input = GetParam().input;
    const Outcome outcome = console.run({"password", "--yes"});
    EXPECT_EQ(outcome.code, GetParam().code);
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().told));
    EXPECT_EQ(readWholeFile(console.home("Backup Files/Database Index")), index);
    EXPECT_EQ(codeWith("secret"), 0);
}

INSTANTIATE_TEST_SUITE_P(All, RefusedChange,
                         testing::Values(Refusal{"wrong\nnew\nnew\n", 3, "refused"},
                                         Refusal{"secret\n", 3, "no new password was given"},
                                         Refusal{"secret\nnew\n", 3, "no new password was given"},
                                         Refusal{"secret\nnew\nnow\n", 3, "are not the same!"},
                                         Refusal{"secret\na*\na*\n", 3, "cannot hold the character"},
                                         Refusal{"secret\nsecret\nsecret\n", 0,
                                                 "Do you want to retain your current password?"}));

TEST_F(ChangingThePassword, isCancelledAtEveryQuestion) {
    bool wasAsked = false;
    for (std::uint64_t question = 1;; ++question) {
        console.input = "secret\nsecret\nsecret\n";
        console.process.cancelAt(question);
        const Outcome outcome = console.run({"password"});
        if (outcome.code == 0) break;
        EXPECT_EQ(outcome.code, 5) << question;
        wasAsked |= outcome.err.find("retain your current password") != std::string::npos;
    }
    EXPECT_TRUE(wasAsked);
}

TEST_F(ChangingThePassword, asksOnATerminal) {
    console.terminal.isThere = true;
    console.terminal.secrets = {"secret", "new", "now", "new", "new"};
    console.terminal.lines = {"y", "a", "n"};
    const Outcome outcome = console.done({"password"});
    EXPECT_EQ(console.terminal.prompts,
              "Password: New password: New password again: New password: New password again: Do you have any "
              "Corvalence reports that need to be re-encrypted with the new password? [y/N] Select a report "
              "file. Do you have any Corvalence reports that need to be re-encrypted with the new password? "
              "[y/N] ");
    EXPECT_THAT(outcome.err,
                HasSubstr("This could take a long time if you have a large number of databases.\n"));
    EXPECT_THAT(outcome.err, HasSubstr("a does not appear to be a Corvalence report"));
    EXPECT_EQ(codeWith("new"), 0);
}

TEST_F(ChangingThePassword, bringsNamedReportsAlong) {
    // Sealed as reports are.
    const std::string index = readWholeFile(console.home("Backup Files/Database Index"));
    for (const char* name : {"one", "two"})
        console.write(name, index);
    console.input = "secret\nnew\nnew\n";
    EXPECT_EQ(console.run({"password", "--report", "one", "a"}).code, 2);
    EXPECT_EQ(codeWith("secret"), 0);
    console.input = "secret\nnew\nnew\n";
    const Outcome outcome = console.done({"password", "--report", "one", "two"});
    EXPECT_EQ(outcome.err, "Password change successfully completed.\n");
    EXPECT_EQ(console.read("one"), console.read("two"));
    const crypto::Session session("new");
    const auto text = crypto::unsealText(console.system.files, console.path("one"), session.key,
                                         session.chains.IndexIV, crypto::kUnsealIndexList);
    EXPECT_TRUE(text.view().starts_with(console.home("Databases/db")));
}

}  // namespace
}  // namespace corvalence::test
