#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console.h"

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

}  // namespace
}  // namespace corvalence::test
