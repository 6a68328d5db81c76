#include "base/record_text.h"

#include <gtest/gtest.h>

#include "base/hex_text.h"

namespace corvalence::base {
namespace {

TEST(RecordText, splitsAtSeparatorsAndTakesAClosingOneAsTheEnd) {
    using Fields = std::vector<std::string_view>;
    EXPECT_EQ(splitFields("one\x7F two"), (Fields{"one", " two"}));
    EXPECT_EQ(splitFields("\x7F\x7Fone\x7F"), (Fields{"", "", "one"}));
    EXPECT_EQ(splitFields("one\x7F\x7F"), (Fields{"one", ""}));
    EXPECT_EQ(splitFields(""), Fields{});
}

TEST(RecordText, takesOnlyPathsThatALineCanCarry) {
    EXPECT_TRUE(isRecordPath("/tmp/ \xFF\x80\t'"));
    EXPECT_TRUE(isRecordPath(std::string(kPathLimit, 'p')));
    EXPECT_FALSE(isRecordPath(std::string(kPathLimit + 1, 'p')));
    EXPECT_FALSE(isRecordPath(""));
    for (const char forbidden : {'\x7F', '\n', '\r', '\0'})
        EXPECT_FALSE(isRecordPath(std::string("/a") + forbidden)) << int{forbidden};
}

TEST(RecordText, cutsOneLineEndAndNoMore) {
    EXPECT_EQ(withoutLineEnd("x\r\n"), "x");
    EXPECT_EQ(withoutLineEnd("x\r"), "x");
    EXPECT_EQ(withoutLineEnd("x\n\n"), "x\n");
    EXPECT_EQ(withoutLineEnd("x\r\r\n"), "x\r");
    EXPECT_EQ(withoutLineEnd("\n"), "");
}

TEST(RecordText, writesTimesAsTwoHalvesAndReadsThemBack) {
    std::string line;
    appendTime(line, FileTime::fromHalves(29000000, -1));
    EXPECT_EQ(line, "29000000\x7F-1\x7F");
    EXPECT_EQ(scanTime("29000000", "-1"), FileTime::fromHalves(29000000, -1));
    EXPECT_FALSE(scanTime("", "-1"));
    EXPECT_FALSE(scanTime("1", "x"));
}

TEST(HexText, writesHighNibbleFirstAndKnowsItsLetters) {
    EXPECT_EQ(hexText(bytesOf("\x0F\xA5")), "0fa5");
    EXPECT_TRUE(isHexText("09afAF"));
    for (const char* text : {"0g", "0G", "0/", "0:", "0@", "0`"})
        EXPECT_FALSE(isHexText(text)) << text;
}

}  // namespace
}  // namespace corvalence::base
