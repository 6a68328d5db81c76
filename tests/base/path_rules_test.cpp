#include "base/path_rules.h"

#include <gtest/gtest.h>

namespace corvalence::base {
namespace {

constexpr PathRules kSlash{'/', false};
constexpr PathRules kBackslash{'\\', true};

struct AbsoluteCase {
    const PathRules& rules;
    std::string_view path;
    std::string_view current;
    std::string_view expected;
};

void PrintTo(const AbsoluteCase& c, std::ostream* out) {
    *out << c.path << " from " << c.current;
}

class Absolute : public testing::TestWithParam<AbsoluteCase> {};

TEST_P(Absolute, isLexicallyCleanAndCleanForGood) {
    const AbsoluteCase& c = GetParam();
    const std::string clean = c.rules.absolute(c.path, c.current);
    EXPECT_EQ(clean, c.expected);
    EXPECT_EQ(c.rules.absolute(clean, c.current), clean);
}

INSTANTIATE_TEST_SUITE_P(
    Slash, Absolute,
    testing::Values(AbsoluteCase{kSlash, "", "/home", ""}, AbsoluteCase{kSlash, "a", "/home", "/home/a"},
                    AbsoluteCase{kSlash, "a", "/", "/a"}, AbsoluteCase{kSlash, ".", "/home/me", "/home/me"},
                    AbsoluteCase{kSlash, "../b/./c", "/home/me", "/home/b/c"},
                    AbsoluteCase{kSlash, "/../../x", "/home", "/x"},
                    AbsoluteCase{kSlash, "//a///b//", "/home", "/a/b"},
                    AbsoluteCase{kSlash, "/", "/home", "/"}, AbsoluteCase{kSlash, "/a/..", "/home", "/"},
                    AbsoluteCase{kSlash, "/a/...", "/home", "/a/..."},
                    AbsoluteCase{kSlash, "a\\..\\b", "/home", "/home/a\\..\\b"},
                    AbsoluteCase{kSlash, "\xFF\n", "/h", "/h/\xFF\n"},
                    AbsoluteCase{kSlash, "C:\\x", "/h", "/h/C:\\x"}));

INSTANTIATE_TEST_SUITE_P(
    Backslash, Absolute,
    testing::Values(AbsoluteCase{kBackslash, "a", "C:\\w", "C:\\w\\a"},
                    AbsoluteCase{kBackslash, "a", "C:\\", "C:\\a"},
                    AbsoluteCase{kBackslash, "D:/x/./y", "C:\\w", "D:\\x\\y"},
                    AbsoluteCase{kBackslash, "D:\\..\\..\\x", "C:\\w", "D:\\x"},
                    AbsoluteCase{kBackslash, "\\x", "C:\\w", "C:\\x"},
                    AbsoluteCase{kBackslash, "/x/..", "C:\\w", "C:\\"},
                    AbsoluteCase{kBackslash, "D:\\", "C:\\w", "D:\\"},
                    AbsoluteCase{kBackslash, "\\\\srv\\share\\a\\..\\..\\b", "C:\\w", "\\\\srv\\share\\b"},
                    AbsoluteCase{kBackslash, "//srv/share/a", "C:\\w", "\\\\srv\\share\\a"},
                    AbsoluteCase{kBackslash, "\\\\srv\\share", "C:\\w", "\\\\srv\\share"},
                    AbsoluteCase{kBackslash, "..", "\\\\srv\\share\\a", "\\\\srv\\share\\"},
                    AbsoluteCase{kBackslash, "\\x", "\\\\srv\\share\\a", "\\\\srv\\share\\x"},
                    // Another drive's own current folder is not known: its top stands for it.
                    AbsoluteCase{kBackslash, "D:x\\y", "C:\\w", "D:\\x\\y"},
                    AbsoluteCase{kBackslash, "c:x", "C:\\w", "C:\\w\\x"},
                    AbsoluteCase{kBackslash, "D:", "C:\\w", "D:\\"}));

TEST(PathRules, takePathsApartAtTheLastSeparator) {
    EXPECT_EQ(kSlash.fileName("/a/b.c"), "b.c");
    EXPECT_EQ(kSlash.folder("/a/b.c"), "/a/");
    EXPECT_EQ(kSlash.fileName("b"), "b");
    EXPECT_EQ(kSlash.folder("b"), "");
    EXPECT_EQ(kSlash.fileName("/a/"), "");
    EXPECT_EQ(kSlash.fileName("/a\\b"), "a\\b");
    EXPECT_EQ(kBackslash.fileName("C:\\a/b"), "b");
    EXPECT_EQ(kSlash.join("/a", "b"), "/a/b");
    EXPECT_EQ(kSlash.join("/a/", "b"), "/a/b");
    EXPECT_EQ(kBackslash.join("C:/", "b"), "C:/b");
}

TEST(PathRules, foldOnlyAsciiLettersAndOnlyWhereTheSystemDoes) {
    EXPECT_FALSE(kSlash.equal("/A", "/a"));
    EXPECT_TRUE(kBackslash.equal("C:\\A.Z", "c:\\a.z"));
    EXPECT_FALSE(kBackslash.equal("\xC3\x84", "\xC3\xA4"));
    EXPECT_FALSE(kBackslash.equal("[", "{"));
    EXPECT_FALSE(kBackslash.equal("@", "`"));
    EXPECT_FALSE(kBackslash.equal("abc", "ab"));
    EXPECT_TRUE(kBackslash.beginsWith("C:\\Folder\\x", "c:\\fOLDER\\"));
    EXPECT_FALSE(kBackslash.beginsWith("C:", "C:\\"));
    EXPECT_EQ(kBackslash.comparisonKey("C:\\AZ@[\xC3\x84"), "c:\\az@[\xC3\x84");
    EXPECT_EQ(kSlash.comparisonKey("/AZ"), "/AZ");
}

}  // namespace
}  // namespace corvalence::base
