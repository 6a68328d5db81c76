#include "reports/report_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "failure_of.h"
#include "reports/report_writer.h"
#include "reports/saved_report.h"
#include "world.h"

namespace corvalence::test {
namespace {

using reports::ReportFile;
using reports::ReportKind;
using reports::ReportPages;

/// Records of two lines begin with "old".
class Renderer : public reports::RecordRenderer {
  public:
    bool beginsRecord(std::size_t, std::string_view line) const override { return !line.starts_with("new"); }
    std::optional<std::vector<std::string>> columns(std::string_view) const override { return std::nullopt; }
    std::vector<reports::ReportField> fields(std::size_t, std::string_view) const override { return {}; }
    std::string text(std::size_t, std::string_view) const override { return {}; }
};

class Report : public testing::Test, public World {
  protected:
    std::string path(ReportKind kind = ReportKind::DirectoryStructure) {
        return reports::reportPath(configuration(), kind);
    }
    ReportFile written(const std::vector<std::string>& names,
                       ReportKind kind = ReportKind::DirectoryStructure) {
        reports::ReportWriter writer(vault(), kind);
        for (const std::string& name : names)
            writer.add({name, "A"});
        writer.keep();
        return *ReportFile::open(vault(), path(kind));
    }
    std::vector<std::size_t> starts(const ReportFile& report, std::size_t size) {
        const ReportPages pages(report, Renderer(), size);
        std::vector<std::size_t> all;
        for (std::size_t page = 1; page <= pages.count(); ++page)
            all.push_back(pages.range(page).begin);
        EXPECT_EQ(pages.range(pages.count() + 9).end, report.lines().size());
        return all;
    }
};

TEST_F(Report, HasPagesOfTheSizeAndARest) {
    using Starts = std::vector<std::size_t>;
    const std::vector<std::string> names(6, "one");
    EXPECT_EQ(starts(written({}), 3), Starts{0});
    EXPECT_EQ(starts(written({names.begin(), names.begin() + 3}), 3), Starts{0});
    EXPECT_EQ(starts(written({names.begin(), names.begin() + 4}), 3), (Starts{0, 3}));
    EXPECT_EQ(starts(written(names), 1), (Starts{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(starts(written({"one", "two", "old", "new", "old", "new"}), 3), (Starts{0, 2, 4}));
    EXPECT_EQ(ReportPages(written(names), Renderer(), 4).caption(2), "Page: 2 of 2");
    EXPECT_EQ(ReportPages(written(names), Renderer(), 4).caption(0), "Page: 1 of 2");
    for (const auto& [text, size] : std::map<std::string, std::size_t>{
             {"0", 5000}, {"x", 5000}, {"-3", 5000}, {"1", 1}, {"1500", 1500}, {"99999", 65000}}) {
        set(settings::key::kPageSize, text);
        EXPECT_EQ(reports::reportPageSize(configuration()), size) << text;
    }
}

TEST_F(Report, KeepsEveryRecordWhateverItsEnd) {
    for (std::size_t length = 1; length < 40; ++length) {
        const ReportFile report = written({"/a", "/b", std::string(length, 'x')});
        ASSERT_EQ(report.lines().size(), 3U) << length;
        EXPECT_EQ(report.lines()[2], std::string(length, 'x') +
                                         "\x7F"
                                         "A\x7F");
        EXPECT_EQ(report.malformed(), 0U);
    }
}

TEST_F(Report, ThatIsDamagedOrForeignIsTold) {
    EXPECT_FALSE(ReportFile::open(vault(), path()));
    written({"/a", "/b"});
    std::string bytes = readWholeFile(path());
    writeWholeFile(path(), bytes.substr(0, bytes.size() - 5));
    const auto failure = failureOf([&] { ReportFile::open(vault(), path()); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->what(),
              std::string("Report file access error.\n\nCorvalence support reference code: RAE"));
    bytes.replace(0, 16, 16, 'x');
    writeWholeFile(path(), bytes + bytes);
    EXPECT_GT(ReportFile::open(vault(), path())->malformed(), 0U);
}

TEST_F(Report, IsSavedSealedUnderItsLetter) {
    written({"/a"}, ReportKind::DirectoryStructure);
    written({"k"}, ReportKind::Registry);
    const auto planned = reports::plannedSaves(vault(), data("Reports/mine"));
    ASSERT_EQ(planned.size(), 2U);
    EXPECT_EQ(planned[0].path, data("Reports/mineR"));
    EXPECT_EQ(planned[1].path, data("Reports/mineD"));
    for (const reports::SavedReport& report : planned) {
        writeWholeFile(report.path, "in the way");
        reports::saveReport(vault(), report);
        EXPECT_EQ(readWholeFile(report.path), readWholeFile(path(report.kind)));
    }
}

TEST(SavedReport, IsTestedByItsLetterAgainstTheMode) {
    using reports::findLetterFault;
    EXPECT_FALSE(findLetterFault("/xD", ReportKind::DirectoryStructure));
    EXPECT_EQ(findLetterFault("/xR", ReportKind::DirectoryStructure),
              "/xR does not appear to be a Corvalence Directory Structure Report");
    EXPECT_EQ(findLetterFault("/xD", ReportKind::Services),
              "/xD does not appear to be a Corvalence Services Report");
    for (const char letter : {'D', 'F', 'P', 'R', 'S'})
        EXPECT_FALSE(findLetterFault(std::string("/x") + letter, std::nullopt));
    EXPECT_TRUE(findLetterFault("/xd", std::nullopt));
    EXPECT_TRUE(findLetterFault("", std::nullopt));
}

}  // namespace
}  // namespace corvalence::test
