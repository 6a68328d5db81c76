#include "base/path_rules.h"

#include <gtest/gtest.h>

namespace corvalence::base {
namespace {

constexpr PathRules kSlash{'/', false};
constexpr PathRules kBackslash{'\\', true};

struct Case {
    std::string_view path, current, expected;
};

template <std::size_t Count>
void expectAbsolute(const PathRules& rules, const Case (&cases)[Count]) {
    for (const auto& [path, current, expected] : cases) {
        const std::string clean = rules.absolute(path, current);
        EXPECT_EQ(clean, expected) << path << " from " << current;
        EXPECT_EQ(rules.absolute(clean, current), clean);
    }
}

TEST(AbsolutePaths, areLexicallyCleanAndCleanForGood) {
    constexpr Case kSlashCases[] = {{"", "/home", ""},
                                    {"a", "/", "/a"},
                                    {"../b/./c", "/home/me", "/home/b/c"},
                                    {"/../../x", "/home", "/x"},
                                    {"//a///b//", "/home", "/a/b"},
                                    {"/a/..", "/home", "/"},
                                    {"/a/...", "/home", "/a/..."},
                                    {"a\\..\\b", "/home", "/home/a\\..\\b"},
                                    {"C:\\x", "/h", "/h/C:\\x"}};
    expectAbsolute(kSlash, kSlashCases);
    constexpr Case kBackslashCases[] = {{"a", "C:\\w", "C:\\w\\a"},
                                        {"a", "C:\\", "C:\\a"},
                                        {"D:/x/./y", "C:\\w", "D:\\x\\y"},
                                        {"D:\\..\\..\\x", "C:\\w", "D:\\x"},
                                        {"\\x", "C:\\w", "C:\\x"},
                                        {"/x/..", "C:\\w", "C:\\"},
                                        {"\\\\srv\\share\\a\\..\\..\\b", "C:\\w", "\\\\srv\\share\\b"},
                                        {"//srv/share/a", "C:\\w", "\\\\srv\\share\\a"},
                                        {"..", "\\\\srv\\share\\a", "\\\\srv\\share\\"},
                                        {"\\x", "\\\\srv\\share\\a", "\\\\srv\\share\\x"},
                                        // Another drive's current folder is not known: its top stands for it.
                                        {"D:x\\y", "C:\\w", "D:\\x\\y"},
                                        {"c:x", "C:\\w", "C:\\w\\x"},
                                        {"D:", "C:\\w", "D:\\"}};
    expectAbsolute(kBackslash, kBackslashCases);
}

TEST(PathRules, takePathsApartAtTheLastSeparator) {
    EXPECT_EQ(kSlash.folder("/a/b.c"), "/a/");
    EXPECT_EQ(kSlash.folder("b"), "");
    EXPECT_EQ(kSlash.fileName("/a/"), "");
    EXPECT_EQ(kSlash.fileName("/a\\b"), "a\\b");
    EXPECT_EQ(kBackslash.fileName("C:\\a/b"), "b");
    EXPECT_EQ(kSlash.join("/a", "b") + kSlash.join("/a/", "b"), "/a/b/a/b");
}

TEST(PathRules, foldOnlyAsciiLettersAndOnlyWhereTheSystemDoes) {
    EXPECT_FALSE(kSlash.equal("/A", "/a"));
    EXPECT_FALSE(kBackslash.equal("abc", "ab"));
    EXPECT_TRUE(kBackslash.beginsWith("C:\\Folder\\x", "c:\\fOLDER\\"));
    EXPECT_FALSE(kBackslash.beginsWith("C:", "C:\\"));
    EXPECT_EQ(kBackslash.comparisonKey("C:\\AZ@[\xC3\x84"), "c:\\az@[\xC3\x84");
    EXPECT_EQ(kSlash.comparisonKey("/AZ"), "/AZ");
}

}  // namespace
}  // namespace corvalence::base
