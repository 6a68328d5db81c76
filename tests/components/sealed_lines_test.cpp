#include "components/sealed_lines.h"

#include <gtest/gtest.h>

#include <random>

#include "base/hex_text.h"
#include "crypto/md5.h"
#include "crypto/sealed_file.h"
#include "files/database_copy.h"
#include "world.h"

namespace corvalence::test {
namespace {

using components::LineForm;
using components::LineIndex;
using components::SealedLines;

class Lists : public testing::Test {
  protected:
    /// The lines of a sealed list that holds this text.
    SealedLines read(const std::string& text) {
        const std::string path = world_.data("list");
        crypto::sealFile(world_.vault().working, text, path, world_.vault().session.key,
                         crypto::PathIV(path));
        const std::string digest = base::hexText(crypto::Md5::of(base::bytesOf(readWholeFile(path))));
        return SealedLines(world_.vault(), {path, digest},
                           LineForm{600, [](std::string_view line) { return line.starts_with('/'); }},
                           progress_.get());
    }

    World world_;
    std::unique_ptr<platform::Progress> progress_ = world_.machine.ui.openProgress("");
};

TEST_F(Lists, LeaveOutWhatIsNoRecordAsAWholeAndCountIt) {
    const SealedLines lines = read("/a\r\n\r\nno path\r\n/" + std::string(700, 'x') + "\r\n/b\n/c\r\n/" +
                                   std::string(597, 'y') + "\r\n/end\r\n");
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0], "/a");
    EXPECT_EQ(lines[1], "/c");
    EXPECT_EQ(lines[2].size(), 598U);
    EXPECT_EQ(lines[3], "/end");
    EXPECT_EQ(lines.malformed(), 4U);
    EXPECT_EQ(read("").size(), 0U);
}

TEST_F(Lists, PassOverWhatTheLastBlockLeavesBehind) {
    // Ends of every length within a block, behind lines that leave line ends in the block before.
    for (std::size_t length = 1; length <= 40; ++length) {
        const SealedLines lines = read("/a\r\n/b\r\n/c\r\n/d\r\n/" + std::string(length, 'x') + "\r\n");
        EXPECT_EQ(lines.size(), 5U) << length;
        EXPECT_EQ(lines.malformed(), 0U) << length;
    }
}

TEST_F(Lists, AreIndexedToFindTheFirstLineFromThereOnAsALookThroughAllWould) {
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        std::string text;
        std::vector<std::string> all;
        const auto word = [&] {
            std::string made = "/";
            for (auto letters = random() % 5; letters > 0; --letters)
                made += static_cast<char>('a' + random() % 2);
            return made;
        };
        for (auto count = random() % 30; count > 0; --count) {
            all.push_back(word());
            text += all.back() + "\r\n";
        }
        const SealedLines lines = read(text);
        ASSERT_EQ(lines.size(), all.size());
        const bool whole = round % 2 == 0;
        LineIndex index(lines, whole, *progress_);
        for (std::size_t from = 0; from <= all.size(); from += random() % 3) {
            const std::string sought = word();
            const auto fits = [&](const std::string& line) {
                return whole ? line == sought : line.starts_with(sought);
            };
            const auto naive = std::find_if(all.begin() + static_cast<std::ptrdiff_t>(from), all.end(), fits);
            const auto found = index.find(sought, from);
            ASSERT_EQ(found.has_value(), naive != all.end());
            if (found) {
                EXPECT_EQ(*found, static_cast<std::size_t>(naive - all.begin()));
            }
            EXPECT_EQ(index.has(sought), std::any_of(all.begin(), all.end(), fits));
            EXPECT_EQ(index.equal(sought).has_value(),
                      std::find(all.begin(), all.end(), sought) != all.end());
        }
    }
}

TEST_F(Lists, AreReadAndSortedNoFurtherThanTheUserWants) {
    ScriptedUserInterface& user = world_.machine.ui;
    std::string text;
    for (int line = 0; line < 100'000; ++line)
        text += "/" + std::to_string(line * 7919 % 100'000) + "\r\n";
    user.cancelAt = 2;
    EXPECT_EQ(read(text).size(), 0U);
    EXPECT_EQ(user.cancelQuestions(), 2U);  // of the blocks, it asks at each

    user.cancelAt.reset();
    const SealedLines lines = read(text);
    ASSERT_EQ(lines.size(), 100'000U);
    EXPECT_EQ(LineIndex(lines, true, *progress_).find("/3", 0),
              LineIndex(lines, true, *progress_).equal("/3"));
    user.cancelAt = user.cancelQuestions() + 2;
    LineIndex index(lines, true, *progress_);
    EXPECT_FALSE(index.find("/3", 5));
    EXPECT_FALSE(index.has("/3") || index.equal("/3"));
    EXPECT_EQ(user.cancelQuestions(), *user.cancelAt);
}

}  // namespace
}  // namespace corvalence::test
