#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLabel>
#include <QToolButton>

#include "components/permission_record.h"
#include "driving.h"
#include "gui/views/report_view.h"
#include "gui/views/row_roles.h"
#include "reports/report_writer.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using reports::ReportKind;
using test::find;

class Reports : public testing::Test, public corvalence::test::World {
  protected:
    Reports() { set(settings::key::kPageSize, "2"); }

    void write(ReportKind kind, const std::vector<std::string>& lines) {
        reports::ReportWriter writer(vault(), kind);
        for (const std::string& line : lines)
            writer.addLine(line);
        writer.keep();
    }
    static std::string fileLine(const std::string& path, char digest, std::size_t size) {
        platform::FileStatus status;
        status.size = size;
        const std::string line = files::FileRecord::of(path, std::string(32, digest), status).render();
        return line.substr(0, line.size() - 2);
    }
    void show(std::vector<ReportKind> kinds) {
        session.showCurrent(std::move(kinds));
        view.refresh();
    }
    QModelIndex at(int row, int column) { return view.table().model()->index(row, column); }
    std::string label(const char* name) { return find<QLabel>(view, name).text().toStdString(); }

    shell::ReportSession session{vault()};
    ReportView view{session};
};

TEST_F(Reports, TellThenFromNowInWordsShadesAndWhatDiffers) {
    QAbstractItemModelTester tester(view.table().model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    write(ReportKind::FileContents, {fileLine("/a/b.txt", 'a', 10), fileLine("/a/b.txt", 'c', 10)});
    show({ReportKind::FileContents});
    ASSERT_EQ(view.table().model()->rowCount(), 2);
    EXPECT_EQ(at(0, 0).data(), "b.txt");
    EXPECT_EQ(view.table().model()->headerData(0, Qt::Vertical), "then");
    EXPECT_EQ(view.table().model()->headerData(1, Qt::Vertical), "now");
    EXPECT_TRUE(view.table().verticalHeader()->isVisibleTo(&view));
    EXPECT_TRUE(at(1, 1).data(DiffersRole).toBool());
    EXPECT_FALSE(at(1, 2).data(DiffersRole).toBool());
    view.table().selectAll();
    EXPECT_TRUE(view.table().selectedText().startsWith("then\tb.txt\taaaa"));
    EXPECT_TRUE(view.table().selectedText().contains("\nnow\tb.txt\tcccc"));
    view.table().clearSelection();
    view.resize(1000, 200);
    view.show();
    const QImage picture = view.table().viewport()->grab().toImage();
    const int x = view.table().viewport()->width() - 2;
    EXPECT_NE(picture.pixelColor(x, view.table().rowViewportPosition(0) + 3),
              picture.pixelColor(x, view.table().rowViewportPosition(1) + 3));
}

TEST_F(Reports, ShowEveryEntryOfAnAccessListWithMarksThatAreReadOut) {
    const auto line = [](const std::vector<std::pair<std::string, std::uint32_t>>& entries) {
        std::vector<platform::AccessEntry> list;
        for (const auto& [account, rights] : entries)
            list.push_back({platform::AccountState::Known, account, "here", rights});
        return "/x\x7F" + components::renderAccessList(list);
    };
    const std::string before = line({{"root", 0xF01FF}, {"users", 0x8}});
    const std::string after = line({{"root", 0xF01FF}, {"users", 0x18}, {"guest", 0}});
    write(ReportKind::Permissions, {before, after});
    show({ReportKind::Permissions});
    ASSERT_EQ(view.table().model()->rowCount(), 5);
    EXPECT_EQ(at(3, 2).data(), "users");
    EXPECT_EQ(at(3, 6).data(Qt::AccessibleTextRole), "Yes, differs");
    EXPECT_EQ(at(3, 5).data(Qt::AccessibleTextRole), "Yes");
    EXPECT_EQ(at(3, 6).data(Qt::ToolTipRole), "Write: Yes");
    EXPECT_FALSE(at(3, 6).data().isValid());
    EXPECT_TRUE(at(3, 6).data(DiffersRole).toBool());
    EXPECT_TRUE(at(1, 6).data(DiffersRole).toBool());
    EXPECT_FALSE(at(3, 5).data(DiffersRole).toBool());
    EXPECT_FALSE(at(2, 4).data(DiffersRole).toBool());
    EXPECT_TRUE(at(4, 4).data(DiffersRole).toBool()) << "an account that was not there";
    view.table().selectRow(3);
    EXPECT_TRUE(view.table().selectedText().startsWith("now\tx\t/\tusers\there\tNo\tYes\tYes\tNo"));
}

TEST_F(Reports, ArePagedFromTheirHeadingAndTellWhyTheyAreEmpty) {
    write(ReportKind::DirectoryStructure, {"/a\x7F"
                                           "A\x7F",
                                           "/b\x7F"
                                           "R\x7F",
                                           "/d/c\x7F"
                                           "AA\x7F"});
    write(ReportKind::Registry, {"HKEY_USERS\\key\x7F"
                                 "1\x7F"
                                 "data\x7F"
                                 "A\x7F",
                                 "no registry line, as it stands\x7F"});
    int changes = 0;
    view.onChanged = [&] { ++changes; };
    show({ReportKind::DirectoryStructure, ReportKind::Registry, ReportKind::Services});
    EXPECT_EQ(label("reportTitle"), "Corvalence - Directory Structure Report.");
    EXPECT_EQ(label("positionLabel"), "Page: 1 of 2");
    EXPECT_FALSE(find<QToolButton>(view, "previousButton").isEnabled());
    auto& next = find<QToolButton>(view, "nextButton");
    next.click();
    EXPECT_EQ(at(0, 2).data(), "Alternate Data Stream Added.");
    EXPECT_FALSE(at(0, 0).data(MarkRole).isValid());
    EXPECT_FALSE(at(0, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
    next.click();
    EXPECT_EQ(label("reportTitle"), "Corvalence - Registry Report.");
    ASSERT_EQ(view.table().model()->rowCount(), 2);
    EXPECT_EQ(view.table().model()->columnCount(), 6);
    EXPECT_EQ(at(1, 0).data().toString(), "no registry line, as it stands\\x7f") << "nothing is passed over";
    next.click();
    EXPECT_EQ(view.table().emptyText(), "The Services component was not checked.");
    EXPECT_FALSE(next.isEnabled());
    EXPECT_EQ(changes, 3);
    find<QToolButton>(view, "previousButton").click();
    EXPECT_TRUE(view.table().emptyText().isEmpty());
    session.showCurrent({ReportKind::Services});
    EXPECT_FALSE(at(0, 0).data().isValid()) << "painted before the view follows its session";
    session.clear();
    EXPECT_FALSE(at(0, 0).data().isValid());
    view.refresh();
    EXPECT_EQ(label("reportTitle"), "");
}

}  // namespace
}  // namespace corvalence::gui
