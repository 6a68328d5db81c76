#include "cli/console_text.h"

#include <gtest/gtest.h>

#include "base/utf8.h"

namespace corvalence::test {
namespace {

using namespace std::string_literals;

struct TextCase {
    std::string bytes;
    std::string shown;
    std::string json;
    bool isUtf8;
};

class AnyBytes : public testing::TestWithParam<TextCase> {};

TEST_P(AnyBytes, areHarmlessOnATerminalAndInJson) {
    const TextCase& text = GetParam();
    EXPECT_EQ(cli::shown(text.bytes), text.shown);
    EXPECT_EQ(cli::jsonString(text.bytes), '"' + text.json + '"');
    EXPECT_EQ(base::isUtf8(text.bytes), text.isUtf8);
}

INSTANTIATE_TEST_SUITE_P(
    All, AnyBytes,
    testing::Values(TextCase{"plain \\ \"", "plain \\ \"", "plain \\\\ \\\"", true},
                    TextCase{"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x94\x91", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x94\x91",
                             "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x94\x91", true},
                    TextCase{"\n\r\t\x1b\x7F\0"s, "\\n\\r\\t\\x1b\\x7f\\x00",
                             "\\u000a\\u000d\\u0009\\u001b\x7F\\u0000", true},
                    TextCase{"\xC2\x9B", "\\xc2\\x9b", "\xC2\x9B", true},  // the C1 form of ESC [
                    TextCase{"a\xFF", "a\\xff", "a\xEF\xBF\xBD", false},
                    TextCase{"\xC0\xAF", "\\xc0\\xaf", "\xEF\xBF\xBD\xEF\xBF\xBD", false},  // overlong
                    TextCase{"\xED\xA0\x80", "\\xed\\xa0\\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD",
                             false},
                    TextCase{"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80",
                             "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", false},
                    TextCase{"\xE2\x82", "\\xe2\\x82", "\xEF\xBF\xBD\xEF\xBF\xBD", false}));  // cut short

TEST(ConsoleText, base64HasThePublishedVectors) {
    // RFC 4648, section 10.
    const std::vector<std::pair<std::string, std::string>> vectors = {{"", ""},
                                                                      {"f", "Zg=="},
                                                                      {"fo", "Zm8="},
                                                                      {"foo", "Zm9v"},
                                                                      {"foob", "Zm9vYg=="},
                                                                      {"fooba", "Zm9vYmE="},
                                                                      {"foobar", "Zm9vYmFy"},
                                                                      {"\xFB\xFF\xFE", "+//+"}};
    for (const auto& [bytes, text] : vectors)
        EXPECT_EQ(cli::base64(bytes), text);
}

TEST(ConsoleText, timesAreUtcToTheTick) {
    EXPECT_EQ(cli::isoTime({0}), "1601-01-01T00:00:00Z");
    EXPECT_EQ(cli::isoTime(base::FileTime::fromUnix(0, 0)), "1970-01-01T00:00:00Z");
    EXPECT_EQ(cli::isoTime(base::FileTime::fromUnix(1'709'209'805, 500'000'000)), "2024-02-29T12:30:05.5Z");
    EXPECT_EQ(cli::isoTime(base::FileTime::fromUnix(-1, 999'999'900)), "1969-12-31T23:59:59.9999999Z");
    EXPECT_EQ(cli::isoTime(base::FileTime::fromUnix(253'402'300'800, 100)), "10000-01-01T00:00:00.0000001Z");
}

TEST(ConsoleText, longPathsKeepTheirEnds) {
    EXPECT_EQ(cli::lastCharacters("short", 5), "short");
    EXPECT_EQ(cli::lastCharacters("/\xC3\xA4\xC3\xA4/file", 7), "...file");
    EXPECT_EQ(cli::lastCharacters("/\xC3\xA4\xC3\xA4/file", 6), "...ile");
    EXPECT_EQ(cli::lastCharacters("/long/path", 2), "..");
    EXPECT_EQ(cli::lastCharacters("/long/path", 0), "");
}

}  // namespace
}  // namespace corvalence::test
