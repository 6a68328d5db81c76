#include "schedule/log_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "schedule/log_files.h"
#include "world.h"

namespace corvalence::test {
namespace {

using schedule::LogIcon;
using schedule::LogKind;
using schedule::LogRow;
using schedule::LogView;
using testing::ElementsAre;

/// The icons of lines that come one after the other, by number.
std::vector<int> iconsOf(const std::vector<std::string>& lines, bool isDark = false) {
    schedule::LogClassifier classifier(isDark);
    std::vector<int> icons;
    for (const std::string& line : lines)
        icons.push_back(static_cast<int>(classifier.classify(line)));
    return icons;
}

TEST(LogIcons, FollowTheBeginningsAndEndsOfLines) {
    const std::vector<std::pair<std::string, int>> table = {
        {"", 3},
        {"12:30:05   29.2.2024", 3},
        {"Database: /a checked.", 5},
        {"Database: /a has been changed!", 2},  // the later rule
        {"New Service detected! ", 6},
        {"Service a has been changed!", 2},
        {"/a has been changed!   ", 2},
        {"The Permissions for /a have been changed!", 2},
        {"Service Removed! ", 7},
        {"Couldn't check /a", 2},
        {"[ CANCELLED MID CHECK ]", 2},
        {"New Registry Subkey: ", 6},
        {"Removed Registry Subkey: ", 7},
        {"Changed Registry Value: ", 2},
        {"File added:   /a", 6},
        {"Directory added:   /a", 6},
        {"Alternate Data Stream added:   /a", 6},
        {"File removed:   /a", 7},
        {"Directory removed:   /a", 7},
        {"Alternate Data Stream removed:   /a", 7},
        {"File moved to Recycle Bin:   /a", 8},
        {"Directory moved to Recycle Bin:   /a", 8},
        {"File created then moved to Recycle Bin between database checks:   /a", 8},
        {"Directory created then moved to Recycle Bin between database checks:   /a", 8},
        {"File name: a", 1},
        {"Digest value when added: a", 3},
        {"Digest value now: a", 1},
        {"0 Files unchecked. ", 0},
        {"3 Files unchecked. ", 2},
        {"1 File unchecked.    ", 2},
        {"0 Files changed. ", 0},
        {"3 Files changed. ", 1},
        {"1 File changed. ", 1},
        {"2 File Permissions changed. ", 1},
        {"0 Files unchanged. ", 3},
        {"2 Services Changed. ", 3},
        {"5 Files checked. ", 3},
        {"0 Files Added.", 3},
        {" Database", 3},
        {std::string(85, '_'), 3},
    };
    for (const auto& [line, icon] : table) {
        EXPECT_THAT(iconsOf({line}), ElementsAre(icon)) << line;
        if (icon == 3) {
            EXPECT_THAT(iconsOf({line}, true), ElementsAre(4)) << line;
        }
    }
    EXPECT_THAT(
        iconsOf({"Size when added: 5 Bytes. ", "Size now: 5 Bytes. ", "Size when added: 5 Bytes. ",
                 "Size now: 6 Bytes. ", "Creation time when added: 12:30:05   29.2.2024",
                 "Creation time now: 12:30:05   29.2.2024", "Modification time when added: a",
                 "Modification time now: b", "Attributes when added: Archive.", "Attributes now: Archive."}),
        ElementsAre(3, 0, 3, 1, 3, 0, 3, 1, 3, 0));
}

TEST(LogIcons, StandBesideWhatCanBePrinted) {
    EXPECT_EQ(schedule::printable("a\tb\x01\x7F\xFF\xC3\xA4\xE2\x82"), "a b   \xC3\xA4  ");
    const std::string stream = "Alternate Data Stream added:   /a:\x01\xFF";
    EXPECT_EQ(schedule::printable(stream), stream);
}

class Viewer : public testing::Test {
  protected:
    void write(const std::string& text) {
        schedule::LogPair(world.vault(), false).write(text);
    }
    LogView view(LogView::Manner manner = {}) { return viewWith(world.vault().session.key, manner); }
    LogView viewWith(const crypto::SessionKey& key, LogView::Manner manner = {}) {
        return LogView(world.platform.files, path(), key, world.vault().session.chains.LogIV, manner);
    }
    std::string path() { return schedule::LogFiles(world.vault()).path(LogKind::Session); }
    static std::vector<LogRow> rows(const LogView& view, std::size_t first, std::size_t count) {
        std::vector<LogRow> rows;
        view.read(first, count, [&](const LogRow& row) {
            rows.push_back(row);
            return true;
        });
        return rows;
    }

    World world;
};

TEST_F(Viewer, ShowsAnyPageAsTheWholeShowsIt) {
    std::string text = "Database: /a checked.\n";
    for (int number = 0; number < 3500; ++number)
        text += number % 2 == 0 ? "Size when added: " + std::to_string(number / 2) + "\n"
                                : "Size now: " + std::to_string(number / 2 + number % 3) + "\n";
    write(text);
    const LogView shown = view();
    EXPECT_TRUE(shown.isValid());
    ASSERT_EQ(shown.rows(), 3501U);
    const auto all = rows(shown, 0, SIZE_MAX);
    ASSERT_EQ(all.size(), 3501U);
    for (const std::size_t first : {0U, 1U, 999U, 1000U, 1001U, 2000U, 2001U, 3000U, 3500U, 3501U}) {
        const auto page = rows(shown, first, 7);
        ASSERT_EQ(page.size(), std::min<std::size_t>(7, 3501 - first)) << first;
        for (std::size_t at = 0; at < page.size(); ++at) {
            EXPECT_EQ(page[at].text, all[first + at].text);
            EXPECT_EQ(page[at].icon, all[first + at].icon) << first + at;
        }
    }
}

TEST_F(Viewer, CutsLinesBeyond10KilobytesUnlessAllIsWanted) {
    write("Database: /a checked.\n" + std::string(10240, 'x') + "\n" + std::string(10241, 'y') + "\n" +
          std::string(1'200'000, 'z') + "\n" + std::string(85, '_') + "\n");
    const LogView cut = view();
    EXPECT_EQ(cut.truncated(), 3U);  // a line beyond a million bytes comes in pieces
    auto shown = rows(cut, 1, 3);
    EXPECT_FALSE(shown[0].isTruncated);
    EXPECT_EQ(shown[0].text.size(), 10240U);
    EXPECT_TRUE(shown[1].isTruncated);
    EXPECT_EQ(shown[1].text.size(), 10240U);
    shown = rows(view({false, false}), 2, 3);
    EXPECT_EQ(shown[0].text.size(), 10241U);
    EXPECT_EQ(shown[1].text.size(), schedule::LogLines::kLongestLine);
    EXPECT_EQ(shown[1].text.size() + shown[2].text.size(), 1'200'000U);
}

TEST_F(Viewer, KnowsALogFromWhatIsNoneAndOpensItWithItsOwnKeyOnly) {
    EXPECT_TRUE(view().isValid());  // an empty one
    EXPECT_EQ(view().rows(), 0U);
    write("\nDatabase: /a checked.\n" + std::string(85, '_') + "\n");
    EXPECT_TRUE(view().isValid());
    EXPECT_EQ(view().rows(), 3U);
    EXPECT_FALSE(viewWith(crypto::SessionKey("another")).isValid());
    EXPECT_TRUE(viewWith(crypto::SessionKey(world.password.password)).isValid());
    const std::string sealed = readWholeFile(path());
    writeWholeFile(path(), sealed + "torn");
    EXPECT_EQ(view().rows(), 3U);
    std::string spoilt = sealed;
    spoilt[20] = static_cast<char>(spoilt[20] ^ 1);
    writeWholeFile(path(), spoilt);
    EXPECT_TRUE(rows(view(), view().rows() - 1, 1).front().text.ends_with(std::string(50, '_')));
    writeWholeFile(path(), std::string(5, 'x'));
    EXPECT_FALSE(view().isValid());
    std::filesystem::remove(fsPath(path()));
    EXPECT_TRUE(view().isValid());
    EXPECT_TRUE(rows(view(), 0, 1).empty());
}

}  // namespace
}  // namespace corvalence::test
