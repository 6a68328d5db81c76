#include "files/file_analysis.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "crypto/sealed_file.h"
#include "files/backup_store.h"
#include "world.h"

namespace corvalence::test {
namespace {

using files::AnalysisView;
using files::FileAnalysis;
using files::RowMark;
using Rows = std::vector<std::uint64_t>;
using Side = FileAnalysis::Side;

std::string anyBytes(std::size_t size) {
    std::mt19937 generator(7);
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(generator());
    return bytes;
}

/// A world with one backed-up file between two others, so that its backup begins somewhere in the container.
class Analysis : public testing::Test {
  protected:
    void begin(const std::string& content, const std::string& storage = "N") {
        world.set("Config17", storage);
        world.write("0", "in front of it");
        world.write("a", content);
        world.write("z", "behind it");
        world.create();
        world.add({"0", "a", "z"});
        record = world.records().at(1);
    }
    FileAnalysis open() { return {world.vault(), world.context(), record}; }
    Rows differing(FileAnalysis& analysis, AnalysisView view, std::uint64_t first = 0) {
        Rows rows;
        const auto progress = world.platform.ui.openProgress("");
        files::ByteProgress bytes(*progress);
        walk = analysis.forEachDifference(view, first, bytes, [&](const files::DifferingRow& row) {
            rows.push_back(row.number);
            return rows.size() < most;
        });
        return rows;
    }
    std::string container() const { return world.data("Backup Files/Backup File 1"); }
    std::string list() const { return world.data("Backup Files/Backup Index 1"); }
    void writeList(const std::string& text) {
        crypto::sealFile(world.vault().working, text, list(), world.vault().session.key,
                         crypto::BackupIV(list()));
    }

    World world;
    files::FileRecord record;
    std::size_t most = SIZE_MAX;
    FileAnalysis::Walk walk = FileAnalysis::Walk::Whole;
};

class EveryStorage : public Analysis, public testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(SealedAndPlain, EveryStorage, testing::Values("N", "P"));

// The bytes on both sides are shown alike, and yet the row differs.
TEST_P(EveryStorage, OneChangedByteMarksOneRowInEachView) {
    std::string content = anyBytes(600'005);
    begin(content, GetParam());
    for (const std::size_t at : {0U, 15U, 16U, 127U, 128U, 65'535U, 65'536U, 262'143U, 262'144U, 600'004U}) {
        std::string changed = content;
        changed[at] = content[at] == 1 ? 2 : 1;
        world.write("a", changed);
        FileAnalysis analysis = open();
        for (const AnalysisView view : {AnalysisView::Text, AnalysisView::Hex}) {
            SCOPED_TRACE(testing::Message() << at << " in rows of " << files::rowWidth(view));
            const std::uint64_t row = at / files::rowWidth(view);
            EXPECT_EQ(differing(analysis, view), Rows{row});
            EXPECT_EQ(analysis.mark(view, row), RowMark::Differs);
            for (const std::uint64_t other : {row + 1, row - 1}) {
                if (other < analysis.rowCount(Side::Now, view)) {
                    EXPECT_EQ(analysis.mark(view, other), RowMark::Equal);
                }
            }
        }
    }
}

TEST_P(EveryStorage, RowsAreThoseOfTheFileInWhateverOrderTheyAreAskedFor) {
    const std::string content = anyBytes(200'001);
    begin(content, GetParam());
    FileAnalysis analysis = open();
    EXPECT_EQ(differing(analysis, AnalysisView::Hex), Rows());
    for (const AnalysisView view : {AnalysisView::Text, AnalysisView::Hex}) {
        const std::size_t width = files::rowWidth(view);
        ASSERT_EQ(analysis.rowCount(Side::Backup, view), 200'001 / width + 1);
        for (std::uint64_t number = 200'001 / width + 1; number-- > 0;) {
            const auto expected = files::analysisRow(view, number,
                                                     base::bytesOf(std::string_view(content).substr(
                                                         static_cast<std::size_t>(number) * width, width)));
            for (const Side side : {Side::Backup, Side::Now}) {
                const auto row = analysis.row(side, view, number);
                ASSERT_TRUE(row) << number;
                ASSERT_EQ(row->ascii + row->hex + row->offset,
                          expected.ascii + expected.hex + expected.offset);
            }
        }
        for (const Side side : {Side::Backup, Side::Now})
            EXPECT_FALSE(analysis.row(side, view, analysis.rowCount(view)));
    }
    const bool isSealed = GetParam() == std::string("N");
    EXPECT_TRUE(world.leftovers(isSealed ? content.substr(1000, 20) : "").empty());
}

TEST(AnalysisRow, ShowsOffsetPairsAndText) {
    const auto hex = files::analysisRow(AnalysisView::Hex, 85, base::bytesOf("\x1f ~\x7f\xc3\xa9"));
    EXPECT_EQ(hex.offset, "AA0");
    EXPECT_EQ(hex.hex, "1F 20 7E 7F C3 A9");
    EXPECT_EQ(hex.ascii, ". ~...");
    const auto text = files::analysisRow(AnalysisView::Text, 33'554'432, base::bytesOf("x"));
    EXPECT_EQ(text.offset, "4294967296");
    EXPECT_EQ(text.hex, "");
    EXPECT_EQ(files::analysisRow(AnalysisView::Hex, 0, {}).offset, "0");
}

struct Lengths {
    std::size_t then;
    std::size_t now;
    std::vector<std::optional<RowMark>> marks;  // of the hex view's rows, those of the backup included
    Rows differing;
};

class OtherLength : public Analysis, public testing::WithParamInterface<Lengths> {};

TEST_P(OtherLength, MarksTheRowsThatOneSideLacks) {
    begin(std::string(GetParam().then, 'x'));
    world.write("a", std::string(GetParam().now, 'x'));
    FileAnalysis analysis = open();
    EXPECT_EQ(analysis.rowCount(AnalysisView::Hex), GetParam().marks.size());
    for (std::size_t i = 0; i < GetParam().marks.size(); ++i)
        EXPECT_EQ(analysis.mark(AnalysisView::Hex, i), GetParam().marks[i]) << i;
    EXPECT_EQ(differing(analysis, AnalysisView::Hex), GetParam().differing);
}

constexpr auto kEqual = RowMark::Equal;
constexpr auto kDiffers = RowMark::Differs;
constexpr auto kExtra = RowMark::NoBackup;

INSTANTIATE_TEST_SUITE_P(All, OtherLength,
                         testing::Values(Lengths{0, 0, {}, {}}, Lengths{0, 33, {kExtra, kExtra}, {0, 1}},
                                         Lengths{33, 0, {std::nullopt, std::nullopt}, {0, 1}},
                                         Lengths{32, 64, {kEqual, kExtra}, {1}},
                                         Lengths{33, 65, {kEqual, kDiffers, kExtra}, {1, 2}},
                                         Lengths{70, 40, {kEqual, kDiffers, std::nullopt}, {1, 2}}));

TEST_F(Analysis, GoesFromOneDifferenceToTheNext) {
    std::string content = anyBytes(1'000'000);
    begin(content);
    for (const std::size_t at : {64U, 300'000U, 999'999U})
        content[at] = static_cast<char>(~content[at]);
    world.write("a", content);
    FileAnalysis analysis = open();
    most = 1;
    EXPECT_EQ(differing(analysis, AnalysisView::Hex, 2), Rows{2});
    EXPECT_EQ(walk, FileAnalysis::Walk::Stopped);
    EXPECT_EQ(differing(analysis, AnalysisView::Hex, 3), Rows{9375});
    EXPECT_EQ(differing(analysis, AnalysisView::Hex, 9376), Rows{31'249});
    EXPECT_EQ(differing(analysis, AnalysisView::Hex, 31'250), Rows());
    EXPECT_EQ(walk, FileAnalysis::Walk::Whole);
    most = SIZE_MAX;
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 2;
    EXPECT_EQ(differing(analysis, AnalysisView::Hex), Rows{2});
    EXPECT_EQ(walk, FileAnalysis::Walk::Cancelled);
}

TEST_F(Analysis, GoesBackFromOneDifferenceToTheOneInFront) {
    std::string content = anyBytes(1'000'000);
    begin(content);
    for (const std::size_t at : {64U, 96U, 300'000U, 999'999U})
        content[at] = static_cast<char>(~content[at]);
    world.write("a", content);
    FileAnalysis analysis = open();
    const auto before = [&](std::uint64_t row) {
        const auto progress = world.platform.ui.openProgress("");
        files::ByteProgress bytes(*progress);
        std::uint64_t found = UINT64_MAX;
        walk = analysis.findDifferenceBefore(AnalysisView::Hex, row, bytes, found);
        return found;
    };
    const Rows rows = {before(UINT64_MAX / 64), before(31'249), before(9375), before(3)};
    EXPECT_EQ(rows, (Rows{31'249, 9375, 3, 2}));
    EXPECT_EQ(before(2), UINT64_MAX);
    EXPECT_EQ(walk, FileAnalysis::Walk::Whole);
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 2;
    EXPECT_EQ(before(9375), UINT64_MAX);
    EXPECT_EQ(walk, FileAnalysis::Walk::Cancelled);
}

TEST_F(Analysis, WithoutABackupShowsTheFileWithoutMarks) {
    world.set("Config5", "0");
    begin("text");
    FileAnalysis analysis = open();
    EXPECT_EQ(analysis.backup(), FileAnalysis::Backup::NotBackedUp);
    EXPECT_EQ(analysis.row(Side::Now, AnalysisView::Text, 0)->ascii, "text");
    EXPECT_FALSE(analysis.mark(AnalysisView::Text, 0));
    EXPECT_EQ(analysis.rowCount(Side::Backup, AnalysisView::Text), 0U);
}

TEST_F(Analysis, TellsWhatIsWrongWithTheBackupAndRepairsNothing) {
    begin("text");
    const std::string whole = readWholeFile(container());
    const auto trouble = [&] {
        FileAnalysis analysis = open();
        EXPECT_EQ(analysis.backup(), FileAnalysis::Backup::Unusable);
        EXPECT_FALSE(analysis.mark(AnalysisView::Text, 0));
        return analysis.trouble();
    };
    const std::string damaged =
        container() + " is damaged: it does not hold the whole backup of " + record.path + ".";
    std::filesystem::resize_file(container(), 31);
    EXPECT_EQ(trouble(), damaged);
    std::filesystem::remove(container());
    EXPECT_EQ(trouble(), files::kBackupFileMissing);
    EXPECT_FALSE(std::filesystem::exists(container()));
    writeWholeFile(container(), whole);
    writeList(record.path + "\x7FN\x7F" + "16.00\x7F" + "17\r\n");
    EXPECT_EQ(trouble(), damaged);
    writeList("no list of backups\r\n");
    EXPECT_EQ(trouble(), files::BackupDamaged(list()).what());
}

TEST_F(Analysis, AFileThatIsGoneOrShrinksHasFewerRows) {
    begin(std::string(300'000, 'x'));
    {
        FileAnalysis analysis = open();
        std::filesystem::resize_file(record.path, 100'000);
        EXPECT_EQ(analysis.row(Side::Now, AnalysisView::Text, 781)->ascii, std::string(32, 'x'));
        EXPECT_EQ(analysis.mark(AnalysisView::Text, 781), RowMark::Differs);
        EXPECT_FALSE(analysis.row(Side::Now, AnalysisView::Text, 782));
        EXPECT_FALSE(analysis.mark(AnalysisView::Text, 2000));
        EXPECT_TRUE(analysis.row(Side::Backup, AnalysisView::Text, 2000));
        EXPECT_EQ(differing(analysis, AnalysisView::Text).size(), 2344U - 781U);
    }
    std::filesystem::remove(record.path);
    FileAnalysis gone = open();
    EXPECT_EQ(gone.nowFailure(), "FileNotFound.");
    EXPECT_EQ(gone.rowCount(Side::Now, AnalysisView::Text), 0U);
    EXPECT_EQ(differing(gone, AnalysisView::Text).size(), 2344U);
}

// A list that was written by a run which was ended before the record holds two backups of the file.
TEST_F(Analysis, ComparesWithTheBackupThatTheRecordMeans) {
    begin("one");
    {
        files::BackupAppender appender(world.vault(), world.context(), true);
        appender.begin();
        appender.write(base::bytesOf("two"));
        appender.end(record.path, 3);
        appender.commit();
    }
    EXPECT_EQ(open().row(Side::Backup, AnalysisView::Text, 0)->ascii, "one");
    // The digest of a file whose backup was left as it is belongs to neither: the latest is shown.
    record.digest = std::string(64, '0');
    EXPECT_EQ(open().row(Side::Backup, AnalysisView::Text, 0)->ascii, "two");
}

TEST_F(Analysis, FilesOfFourGibibytesAndMoreOpenAtOnce) {
    constexpr std::uint64_t kSize = 0x1'0000'0100;
    begin("");
    for (const std::string& path : {record.path, container()}) {
        std::filesystem::resize_file(path, 0);
        std::filesystem::resize_file(path, kSize);
    }
    writeList(record.path + "\x7FP\x7F" + std::to_string(kSize) + ".00\x7F" + "256\r\n");
    std::fstream(record.path, std::ios::in | std::ios::out | std::ios::binary).seekp(0x1'0000'0090).put('!');
    FileAnalysis analysis = open();
    EXPECT_EQ(analysis.rowCount(Side::Backup, AnalysisView::Text), kSize / 128);
    EXPECT_EQ(analysis.mark(AnalysisView::Text, 0), RowMark::Equal);
    EXPECT_EQ(analysis.mark(AnalysisView::Text, 33'554'433), RowMark::Differs);
    EXPECT_EQ(analysis.row(Side::Now, AnalysisView::Hex, 134'217'732)->offset, "100000080");
    EXPECT_EQ(differing(analysis, AnalysisView::Text, 33'550'000), Rows{33'554'433});
}

}  // namespace
}  // namespace corvalence::test
