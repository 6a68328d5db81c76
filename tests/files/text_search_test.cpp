#include "files/text_search.h"

#include <gtest/gtest.h>

#include <span>

#include "files/content_test.h"
#include "platform/file_copy.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

using files::TextSearch;
using Result = TextSearch::Result;

class Search : public testing::Test {
  protected:
    Result search(const std::string& content, std::vector<std::string> texts, TextSearch::Rules rules = {}) {
        const auto file = machine.files.openShared(machine.folder.write("file", content));
        const auto progress = machine.ui.openProgress("");
        return TextSearch(std::move(texts), rules).search(*file, *progress);
    }
    bool finds(const std::string& content, const std::string& text, TextSearch::Rules rules = {}) {
        return search(content, {text}, rules) == Result::Found;
    }

    TestPlatform machine;
};

constexpr TextSearch::Rules kCase{true, false, false};
constexpr TextSearch::Rules kWord{false, true, false};
constexpr TextSearch::Rules kText{false, false, true};

TEST_F(Search, ComparesWithOrWithoutCase) {
    EXPECT_TRUE(finds("a NeeDle b", "needle") && finds("a needle b", "NEEDLE") &&
                finds("needle", "needle", kCase));
    EXPECT_FALSE(finds("a NeeDle b", "needle", kCase) || finds("needl", "needle") || finds("", "x"));
    EXPECT_TRUE(finds("aaaaab", "aab") && finds("xyxyxz", "xyxz"));
    EXPECT_FALSE(finds("\xC3\x84", "\xC3\xA4"));  // letters of ASCII alone have two cases
    EXPECT_TRUE(finds(std::string("\0\0n\0x", 5), std::string("n\0x", 3)));
    EXPECT_TRUE(finds("", ""));
}

TEST_F(Search, TakesBlanksAndTheFilesEndsForTheBordersOfAWord) {
    for (const char* content : {"word", "word x", "x word", "x word x", "sword word"})
        EXPECT_TRUE(finds(content, "word", kWord)) << content;
    for (const char* content : {"sword", "words", "x sword", "word\n", "a,word"})
        EXPECT_FALSE(finds(content, "word", kWord)) << content;
    EXPECT_TRUE(finds("go on now", "go on", kWord));
}

TEST_F(Search, EndsAtTheFirstByteThatIsNoTextWhereOnlyTextIsWanted) {
    const std::string text(200, 't');
    EXPECT_TRUE(finds(text + "needle", "needle", kText) && finds(text + "needle\n", "needle", kText));
    EXPECT_FALSE(finds(text + "\nneedle", "needle", kText) ||
                 finds("\x7F" + text + "needle", "needle", kText));
    EXPECT_FALSE(finds("\xC3\xA4 needle", "needle", kText));
}

// Wherever a text lies across the blocks that are read, it is found, and what only looks like one is not.
TEST_F(Search, FindsWhatLiesAcrossTwoBlocks) {
    for (std::size_t shift = 0; shift < 12; ++shift) {
        for (const std::size_t border : {platform::kBlockSize, 2 * platform::kBlockSize}) {
            const std::string before(border - shift, '.');
            for (const TextSearch::Rules& rules : {TextSearch::Rules{}, kCase, kText}) {
                EXPECT_TRUE(finds(before + "needle", "needle", rules)) << border << " " << shift;
                EXPECT_FALSE(finds(before + "needl", "needle", rules)) << border << " " << shift;
            }
            EXPECT_TRUE(finds(before + " needle", "needle", kWord)) << border << " " << shift;
            EXPECT_FALSE(finds(before + "needle", "needle", kWord)) << border << " " << shift;
        }
    }
}

TEST_F(Search, FindsAnyOfSeveralTexts) {
    EXPECT_EQ(search("..ws2_32.DLL..", {"wininet.dll", "WS2_32.dll"}), Result::Found);
    EXPECT_EQ(search("xxabxx", {"qq", "ab", "zz"}), Result::Found);  // they share no byte
    EXPECT_EQ(search("xxqxzabx", {"qq", "abc", "zz"}), Result::NotFound);
}

TEST_F(Search, IsCancelledBetweenBlocks) {
    machine.ui.cancelAt = machine.ui.cancelQuestions() + 3;
    EXPECT_EQ(search(std::string(4 * platform::kBlockSize, '.'), {"needle"}), Result::Cancelled);
}

/// Whatever file is opened, this one is read: the name decides which files are looked into.
class StandIn : public FaultyFileSystem {
  public:
    StandIn(TestPlatform& machine, const std::string& content)
        : FaultyFileSystem(machine.files, machine.faults), real_(machine.folder.write("file", content)) {}
    std::unique_ptr<platform::File> openShared(const std::string&) override {
        return FaultyFileSystem::openShared(real_);
    }

  private:
    std::string real_;
};

struct Ability {
    const char* path;
    const char* content;
    char passes;  // network, system, cookies, or none
};

constexpr Ability kOnWindows[] = {{"C:\\x\\a.exe", "..WinInet.dll..", 'n'},
                                  {"C:\\x\\a.DLL", "wsock32.DLL", 'n'},
                                  {"C:\\x\\a.txt", "wininet.dll", '-'},
                                  {"C:\\WINDOWS\\a.sys", "", 's'},
                                  {"C:\\Windows\\a.sys", "", '-'},
                                  {"D:\\WINNT\\a.msc", "", 's'},
                                  {"C:\\x\\index.dat", "", 'c'},
                                  {"C:\\x\\my index.dat", "", '-'}};
constexpr Ability kOnLinux[] = {{"/opt/tool", "..getaddrinfo..", 'n'},
                                {"/opt/libx.so.1.2", "libssl.so.3", 'n'},
                                {"/opt/notes.txt", "getaddrinfo", '-'},
                                {"/usr/bin/ls", "", 's'},
                                {"/opt/bin/ls", "", '-'},
                                {"/home/a/cookies.sqlite", "", 'c'}};

class Abilities : public testing::TestWithParam<bool> {};

TEST_P(Abilities, AreToldByNameFolderAndImports) {
    const base::PathRules paths = GetParam() ? base::PathRules{'\\', true} : base::PathRules{};
    TestPlatform machine;
    const auto progress = machine.ui.openProgress("");
    for (const Ability& row : GetParam() ? std::span<const Ability>(kOnWindows) : kOnLinux) {
        StandIn files(machine, row.content);
        for (const char ability : {'n', 's', 'c'}) {
            files::Criteria criteria;
            criteria.abilities.emplace();
            criteria.abilities->network = ability == 'n';
            criteria.abilities->system = ability == 's';
            criteria.abilities->cookies = ability == 'c';
            files::ContentTest test(criteria, paths);
            EXPECT_EQ(test.test(row.path, files, *progress) == files::ContentTest::Result::Passes,
                      ability == row.passes)
                << row.path << " " << ability;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Criteria, Abilities, testing::Bool());

}  // namespace
}  // namespace corvalence::test
