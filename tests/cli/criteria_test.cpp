#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console.h"

namespace corvalence::test {
namespace {

using testing::HasSubstr;

using Words = std::vector<std::string>;

Words joined(Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// A console with four files and an empty database.
class CriteriaOptions : public testing::Test {
  protected:
    CriteriaOptions() {
        console.done({"init"});
        console.done({"create", "file-contents", "db"});
        console.write("small.txt", "1234567890");
        console.write("large.txt", std::string(2000, 'l'));
        console.write("tool.EXE", "the needle");
        console.write("plain", "no NEEDLES here");
    }
    /// Names of the listed files, in one word each, in their order.
    std::string listed() {
        std::string names;
        const nlohmann::json document = console.done({"files", "db", "--json"}).json();
        for (const auto& file : document["files"])
            names += file["path"].get<std::string>().substr(console.path("").size()) + " ";
        return names;
    }

    Console console;
};

struct Selection {
    Words criteria;
    std::string names;
};

TEST_F(CriteriaOptions, addAndRemoveTheSameFiles) {
    for (const Selection& selection : std::vector<Selection>{
             {{"--size", "larger:15"}, "large.txt "},
             {{"--size", "between:9:11"}, "small.txt tool.EXE "},
             {{"--size", "equal:10", "--type", "exe"}, "tool.EXE "},
             {{"--type", ""}, "plain "},
             {{"--type", "*", "--size", "smaller:11"}, "small.txt tool.EXE "},
             {{"--modified", "after:1999-12-31T23:59:59", "--type", "txt"}, "large.txt small.txt "},
             {{"--created", "between:1970-01-01T00:00:00:1980-01-01T00:00:00"}, ""},
             {{"--attributes", "archive"}, "large.txt plain small.txt tool.EXE "},
             {{"--attributes", "read-only,hidden+"}, ""},
             {{"--contents", "needle"}, "plain tool.EXE "},
             {{"--contents", "needle", "--match-case", "--whole-word"}, "tool.EXE "},
             {{"--contents", "*"}, "large.txt plain small.txt tool.EXE "},
             {{"--abilities", "cookies"}, ""}}) {
        SCOPED_TRACE(selection.criteria[0] + " " + selection.criteria[1]);
        EXPECT_EQ(console.run(joined({"add", "db", "--location", "."}, selection.criteria)).code, 0);
        EXPECT_EQ(listed(), selection.names);
        console.done({"add", "db", "--location", "."});
        console.done(joined({"remove", "db", "--yes", "--location", "."}, selection.criteria));
        EXPECT_EQ(
            console.done({"files", "db", "--json"}).json()["files"].size(),
            4 - static_cast<std::size_t>(std::count(selection.names.begin(), selection.names.end(), ' ')));
        console.run({"remove", "db", "--all", "--yes"});
    }
}

TEST_F(CriteriaOptions, areRefusedWhereTheyMakeNoSense) {
    for (const Words& wrong :
         std::vector<Words>{{"--size", "10"},
                            {"--size", "larger:"},
                            {"--size", "larger:-1"},
                            {"--size", "between:1"},
                            {"--size", "equal:4294967296"},
                            {"--created", "at:2023-02-29T00:00:00"},
                            {"--created", "at:2024-02-29 00:00:00"},
                            {"--modified", "between:2024-01-01T00:00:00"},
                            {"--created", "at:2024-01-01T00:00:00", "--modified", "at:2024-01-01T00:00:00"},
                            {"--attributes", "read-only,odd"},
                            {"--attributes", ""},
                            {"--abilities", "flying"},
                            {"--contents", ""},
                            {"--whole-word"}}) {
        for (const char* command : {"add", "remove"}) {
            const Outcome outcome = console.run(joined({command, "db", "--location", ".", "--yes"}, wrong));
            EXPECT_EQ(outcome.code, 2) << command << " " << wrong.back();
        }
    }
    EXPECT_EQ(console.run({"add", "db", "plain", "--size", "equal:1"}).code, 2);
    EXPECT_EQ(console.run({"remove", "db"}).code, 2);
    EXPECT_EQ(console.run({"remove", "db", "plain", "--all"}).code, 2);
}

TEST_F(CriteriaOptions, leaveARemovalToAnAnswer) {
    console.done({"add", "db", "--location", "."});
    const Outcome unanswered = console.run({"remove", "db", "plain"});
    EXPECT_EQ(unanswered.code, 5);
    EXPECT_THAT(unanswered.err, HasSubstr("1 file will be removed from "));
    EXPECT_EQ(console.done({"files", "db", "--json"}).json()["files"].size(), 4U);
    const auto removed = console.done({"remove", "db", "plain", "--yes", "--json"}).json();
    EXPECT_EQ(removed["removed"], 1);
    EXPECT_EQ(removed["cancelled"], false);
    EXPECT_EQ(console.read("plain"), "no NEEDLES here");
}

}  // namespace
}  // namespace corvalence::test
