#include "base/record_text.h"

#include <gtest/gtest.h>

#include "base/hex_text.h"

namespace corvalence::base {
namespace {

using Fields = std::vector<std::string_view>;

TEST(RecordText, splitsAtSeparatorsAndTakesAClosingOneAsTheEnd) {
    EXPECT_EQ(splitFields("a\x7F"
                          "b"),
              (Fields{"a", "b"}));
    EXPECT_EQ(splitFields("a\x7F"
                          "b\x7F"),
              (Fields{"a", "b"}));
    EXPECT_EQ(splitFields("\x7F\x7F"
                          "b"),
              (Fields{"", "", "b"}));
    EXPECT_EQ(splitFields("a\x7F\x7F"), (Fields{"a", ""}));
    EXPECT_EQ(splitFields(""), Fields{});
    EXPECT_EQ(splitFields("one"), Fields{"one"});
}

TEST(RecordText, takesOnlyPathsThatALineCanCarry) {
    EXPECT_TRUE(isRecordPath("/etc/passwd"));
    EXPECT_TRUE(isRecordPath("/tmp/ \xFF\x80\t'"));
    EXPECT_TRUE(isRecordPath(std::string(kPathLimit, 'p')));
    EXPECT_FALSE(isRecordPath(std::string(kPathLimit + 1, 'p')));
    EXPECT_FALSE(isRecordPath(""));
    for (const char forbidden : {'\x7F', '\n', '\r', '\0'}) {
        EXPECT_FALSE(isRecordPath(std::string("/a") + forbidden + "b")) << int{forbidden};
        EXPECT_FALSE(isRecordPath(std::string("/a") + forbidden)) << int{forbidden};
    }
}

TEST(RecordText, cutsOneLineEndAndNoMore) {
    EXPECT_EQ(withoutLineEnd("x\r\n"), "x");
    EXPECT_EQ(withoutLineEnd("x\n"), "x");
    EXPECT_EQ(withoutLineEnd("x\r"), "x");
    EXPECT_EQ(withoutLineEnd("x\n\n"), "x\n");
    EXPECT_EQ(withoutLineEnd("x\r\r\n"), "x\r");
    EXPECT_EQ(withoutLineEnd("\r\n"), "");
    EXPECT_EQ(withoutLineEnd(""), "");
}

TEST(HexText, writesHighNibbleFirstAndKnowsItsLetters) {
    const std::array<std::uint8_t, 4> bytes{0x00, 0x0F, 0xF0, 0xA5};
    EXPECT_EQ(hexText(bytes), "000ff0a5");
    EXPECT_TRUE(isHexText("00ffFF9a"));
    EXPECT_FALSE(isHexText("0g"));
    EXPECT_FALSE(isHexText("0/"));
    EXPECT_FALSE(isHexText("0:"));
    EXPECT_FALSE(isHexText("0@"));
    EXPECT_FALSE(isHexText("0`"));
}

}  // namespace
}  // namespace corvalence::base
