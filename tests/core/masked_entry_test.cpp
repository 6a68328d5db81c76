#include "core/masked_entry.h"

#include <gtest/gtest.h>

namespace corvalence::test {
namespace {

using core::MaskedEntry;

TEST(MaskedEntry, TakesEachCharacterAndShowsAStarForIt) {
    MaskedEntry entry;
    for (const char* character : {"a", " ", "\xC3\xA4", "\xF0\x9F\x94\x91"})
        EXPECT_EQ(entry.type(character), MaskedEntry::Typed::Taken);
    EXPECT_EQ(entry.stars(), "****");
    EXPECT_EQ(entry.text(), "a \xC3\xA4\xF0\x9F\x94\x91");
    EXPECT_EQ(entry.type("\t"), MaskedEntry::Typed::Refused);
    EXPECT_EQ(entry.take().view(), "a \xC3\xA4\xF0\x9F\x94\x91");
    EXPECT_EQ(entry.stars() + std::string(entry.text()), "");
}

TEST(MaskedEntry, StartsAgainWithAStar) {
    MaskedEntry entry;
    entry.type("a");
    EXPECT_EQ(entry.type("*"), MaskedEntry::Typed::StartedAgain);
    entry.type("b");
    EXPECT_EQ(entry.text(), "b");
    entry.startAgain();
    EXPECT_EQ(entry.stars() + std::string(entry.text()), "");
}

TEST(MaskedEntry, HasAtMost128Characters) {
    MaskedEntry entry;
    EXPECT_TRUE(entry.paste(std::string(127, 'x')));
    EXPECT_FALSE(entry.paste("yz"));
    EXPECT_EQ(entry.type("\xC3\xA4"), MaskedEntry::Typed::Taken);
    EXPECT_EQ(entry.type("y"), MaskedEntry::Typed::Refused);
    EXPECT_EQ(entry.stars().size(), 128U);
    EXPECT_FALSE(core::findPasswordFault(entry.text()).has_value());
}

// A password that was taken in part would be another one than the user thinks he has.
TEST(MaskedEntry, TakesAPastedTextWholeOrNotAtAll) {
    MaskedEntry entry;
    entry.type("a");
    for (const char* text : {"", "b*c", "*", "b\n", "b\x7F", "\xC3"}) {
        EXPECT_FALSE(entry.paste(text)) << text;
        EXPECT_EQ(entry.text(), "a");
    }
    EXPECT_TRUE(entry.paste("bc"));
    EXPECT_EQ(entry.text(), "abc");
}

}  // namespace
}  // namespace corvalence::test
