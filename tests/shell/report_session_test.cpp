#include "shell/report_session.h"

#include <gtest/gtest.h>

#include "reports/report_writer.h"
#include "reports/saved_report.h"
#include "world.h"

namespace corvalence::test {
namespace {

using reports::ReportKind;
using shell::ReportSession;

class ReportShowing : public testing::Test, public World {
  protected:
    ReportShowing() { set(settings::key::kPageSize, "3"); }

    void write(ReportKind kind, std::size_t lines) {
        reports::ReportWriter writer(vault(), kind);
        for (std::size_t line = 0; line < lines; ++line)
            writer.add({"/folder/" + std::to_string(line), "A"});
        writer.keep();
    }
    static std::vector<ReportKind> all() {
        std::vector<ReportKind> kinds;
        for (const reports::ReportRow& row : reports::reportRows())
            kinds.push_back(row.kind);
        return kinds;
    }
    /// What is on screen, in a line.
    std::string shown() const {
        return std::string(session.row().consoleName) + ": " + session.barCaption() + ", " +
               session.pageCaption() + ", " + std::to_string(session.lines()) + session.emptyText();
    }
    std::string saved(ReportKind kind) {
        const std::string path = data("mine");
        for (const auto& report : reports::plannedSaves(vault(), path))
            reports::saveReport(vault(), report);
        return path + reports::reportRow(kind).letter;
    }

    ReportSession session{vault()};
};

TEST_F(ReportShowing, GoesThroughThePagesOfAReportAndThenToTheNextReport) {
    write(ReportKind::FileContents, 0);
    write(ReportKind::DirectoryStructure, 7);
    write(ReportKind::Registry, 3);
    const std::vector<std::string> way = {
        "file-contents: Page: 1 of 5, Page: 1 of 1, 0There are no File Contents changes to report.",
        "directory-structure: Page: 2 of 5, Page: 1 of 3, 3",
        "directory-structure: Page: 2 of 5, Page: 2 of 3, 3",
        "directory-structure: Page: 2 of 5, Page: 3 of 3, 1",
        "permissions: Page: 3 of 5, Page: 1 of 1, 0The Permissions component was not checked.",
        "registry: Page: 4 of 5, Page: 1 of 1, 3",
        "services: Page: 5 of 5, Page: 1 of 1, 0The Services component was not checked.",
    };
    session.showCurrent(all());
    std::vector<std::string> seen = {shown()};
    while (session.next())
        seen.push_back(shown());
    EXPECT_EQ(seen, way);
    EXPECT_FALSE(session.hasNext());
    seen = {shown()};
    while (session.previous())
        seen.push_back(shown());
    EXPECT_EQ(seen, std::vector<std::string>(way.rbegin(), way.rend()));
    session.next();
    session.showCurrent(all(), 4);
    EXPECT_EQ(shown(), way[5]) << "the first that was checked";
    session.showCurrent(all(), 2);
    const auto other = session.again();
    EXPECT_EQ(other->pageCaption(), "Page: 1 of 3");
    EXPECT_EQ(other->total(), 1U);
    other->goToPage(2);
    EXPECT_EQ(session.pageCaption(), "Page: 1 of 3") << "each has a page of its own";
    session.goToPage(99);
    EXPECT_EQ(session.lineNumber(0), 6U);
    EXPECT_EQ(session.renderer().columns(session.line(0))->front(), "6");
    EXPECT_TRUE(machine.ui.messages.empty());
}

TEST_F(ReportShowing, OfOneKindShowsItsPagesInTheBarAndEndsWithTheReports) {
    write(ReportKind::Services, 4);
    session.showCurrent({ReportKind::Services});
    EXPECT_EQ(shown(), "services: Page: 1 of 2, Page: 1 of 2, 3");
    EXPECT_FALSE(session.isSaved());
    const std::string path = saved(ReportKind::Services);
    session.clear();
    EXPECT_FALSE(session.isShown());
    EXPECT_TRUE(platform.files.status(path, platform::Follow::Yes));
    EXPECT_FALSE(platform.files.status(reports::reportPath(configuration(), ReportKind::Services),
                                       platform::Follow::Yes));
}

TEST_F(ReportShowing, OpensASavedReportThatFitsTheMode) {
    write(ReportKind::Registry, 4);
    const std::string path = saved(ReportKind::Registry);
    EXPECT_FALSE(session.showSaved(path, ReportKind::Services));
    EXPECT_FALSE(session.isShown());
    EXPECT_TRUE(machine.ui.saw(path + " does not appear to be a Corvalence Services Report"));
    ASSERT_TRUE(session.showSaved(path, std::nullopt));
    EXPECT_EQ(shown(), "registry: Page: 1 of 2, Page: 1 of 2, 3");
    EXPECT_TRUE(session.isSaved());
    machine.ui.messages.clear();
    session.showSaved(data("goneR"), ReportKind::Registry);
    EXPECT_TRUE(machine.ui.saw("Report file access error.\n\nCorvalence support reference code: RAE"));
    EXPECT_EQ(session.emptyText(), "Report file access error.");
    session.clear();
    EXPECT_TRUE(platform.files.status(path, platform::Follow::Yes));
}

TEST_F(ReportShowing, NeverTellsThatNothingChangedOfAFileThatIsNoReport) {
    write(ReportKind::Registry, 1);
    const std::string path = data("otherR");
    writeWholeFile(path, std::string(64, 'x'));
    session.showSaved(path, ReportKind::Registry);
    EXPECT_EQ(session.emptyText(), path + " does not appear to be a Corvalence Registry Report");
    reports::ReportWriter writer(vault(), ReportKind::Registry);
    writer.addLine("no record, and longer than a tail");
    writer.add({"/a", "A"});
    writer.keep();
    session.showCurrent({ReportKind::Registry});
    EXPECT_EQ(session.lines(), 1U);
    EXPECT_EQ(session.damageText(), "1 line is no record of this kind.");
}

}  // namespace
}  // namespace corvalence::test
