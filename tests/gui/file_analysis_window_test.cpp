#include "gui/dialogs/file_analysis_window.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QtTest/QTest>
#include <filesystem>

#include "driving.h"
#include "gui/dialogs/analysis_lists.h"
#include "gui/dialogs/analysis_model.h"
#include "listed_file.h"
#include "world.h"

namespace corvalence::gui {
namespace {

using corvalence::test::World;
using files::AnalysisView;
using files::FileAnalysis;
using test::find;

class Comparison : public testing::Test {
  public:
    void begin(const std::string& then, const std::string& now) {
        corvalence::test::listFile(world, "a", then);
        world.write("a", now);
        record = world.records().at(0);
    }
    /// The window, shown and come to rest.
    std::unique_ptr<FileAnalysisWindow> open() {
        auto window =
            std::make_unique<FileAnalysisWindow>(world.vault(), world.context(), record, help, nullptr);
        window->show();
        EXPECT_TRUE(isIdle(*window));
        return window;
    }
    static bool isIdle(FileAnalysisWindow& window) {
        QCoreApplication::processEvents();
        return test::waitFor(
                   [&] { return !find<QLabel>(window, "statusLabel").text().startsWith("Anal"); }) &&
               test::waitFor([&] { return find<QPushButton>(window, "textButton").isEnabled(); });
    }
    static AnalysisLists& lists(FileAnalysisWindow& window) { return *window.findChild<AnalysisLists*>(); }
    static QString cell(FileAnalysisWindow& window, const char* list, int row, int column,
                        int role = Qt::DisplayRole) {
        const auto& model = *find<QTableView>(window, list).model();
        return model.data(model.index(row, column), role).toString();
    }
    void press(FileAnalysisWindow& window, const char* name) {
        find<QPushButton>(window, name).click();
        EXPECT_TRUE(isIdle(window));
    }

    World world;
    files::FileRecord record;
    const OpenHelp help;
};

TEST_F(Comparison, GoesToTheFirstDifferenceAndFromOneToTheOther) {
    std::string content(1'000'000, 'x');
    const std::string then = content;
    for (const std::size_t at : {300'000U, 700'000U})
        content[at] = 'y';
    begin(then, content);
    const auto window = open();
    EXPECT_EQ(window->windowTitle(), "File Analysis: a");
    EXPECT_EQ(lists(*window).picked(), 300'000U / 128);
    press(*window, "nextButton");
    EXPECT_EQ(lists(*window).picked(), 700'000U / 128);
    press(*window, "nextButton");
    EXPECT_EQ(find<QLabel>(*window, "statusLabel").text(), "No further difference.");
    EXPECT_EQ(lists(*window).picked(), 700'000U / 128);
    press(*window, "hexButton");
    EXPECT_EQ(lists(*window).picked(), 700'000U / 128 * 4);
    press(*window, "previousButton");
    EXPECT_EQ(lists(*window).picked(), 300'000U / 32);

    const auto picked = find<QTableView>(*window, "nowList").selectionModel()->selectedRows();
    ASSERT_EQ(picked.size(), 1);
    const int row = picked[0].row();
    EXPECT_EQ(cell(*window, "nowList", row, 0), QString::number(300'000 / 32 * 32, 16).toUpper());
    EXPECT_EQ(cell(*window, "nowList", row, 0, Qt::AccessibleTextRole).right(26),
              ": Differs from the backup.");
    EXPECT_NE(cell(*window, "nowList", row, 2), cell(*window, "backupList", row, 2));
    EXPECT_EQ(cell(*window, "nowList", row + 1, 1), cell(*window, "backupList", row + 1, 1));
    EXPECT_EQ(cell(*window, "nowList", row + 1, 0, Qt::ToolTipRole), "Equal to the backup.");
}

TEST_F(Comparison, OpensAFileOfGigabytesAtOnceAndReachesItsEnd) {
    begin("short", "short");
    std::filesystem::resize_file(world.path("a"), std::uint64_t{200} << 30);
    QElapsedTimer since;
    since.start();
    FileAnalysisWindow window(world.vault(), world.context(), record, help, nullptr);
    window.show();
    EXPECT_LT(since.elapsed(), 20'000) << "to read all of it would take minutes";
    EXPECT_TRUE(isIdle(window));
    EXPECT_EQ(lists(window).picked(), 0U);
    find<QPushButton>(window, "hexButton").click();
    QTableView& now = find<QTableView>(window, "nowList");
    QTest::keyClick(&now, Qt::Key_End);
    const int last = now.model()->rowCount() - 1;
    EXPECT_EQ(cell(window, "nowList", last, 0), "31FFFFFFE0");
    EXPECT_EQ(find<QTableView>(window, "backupList").model()->rowCount(), 0);

    QTest::keyClick(&now, Qt::Key_Home);
    EXPECT_EQ(lists(window).top(), 0U);
    QTest::keyClick(&now, Qt::Key_PageDown);
    EXPECT_GT(lists(window).top(), 0U);
}

TEST_F(Comparison, TheFirstCancelEndsASearchAndTheNextClosesTheWindow) {
    begin(std::string(100'000'000, 'x'), std::string(100'000'000, 'x'));
    FileAnalysisWindow window(world.vault(), world.context(), record, help, nullptr);
    window.show();
    QPushButton& cancel = find<QPushButton>(window, "cancelButton");
    const QLabel& status = find<QLabel>(window, "statusLabel");
    // Not before the search has begun, where it would close the window.
    QTimer searching;
    QObject::connect(&searching, &QTimer::timeout, [&] {
        if (!status.text().startsWith("Anal")) return;
        searching.stop();
        cancel.click();
    });
    searching.start(5);
    EXPECT_TRUE(test::waitFor([&] { return !status.text().isEmpty(); }));
    EXPECT_TRUE(isIdle(window));
    EXPECT_EQ(status.text(), "The search was cancelled.");
    EXPECT_TRUE(window.isVisible());
    cancel.click();
    EXPECT_FALSE(window.isVisible());

    window.show();
    QTimer::singleShot(0, [&] { find<QPushButton>(window, "okButton").click(); });
    find<QPushButton>(window, "nextButton").click();
    EXPECT_FALSE(window.isVisible()) << "OK closes in the middle of a search";
    EXPECT_EQ(window.result(), QDialog::Accepted);
}

TEST_F(Comparison, ScrollsBothListsTogether) {
    begin(std::string(100'000, 'x'), std::string(50'000, 'x'));
    const auto window = open();
    QScrollBar& bar = find<QScrollBar>(*window, "rowsBar");
    bar.setValue(100);
    EXPECT_EQ(cell(*window, "nowList", 0, 0), "12800");
    EXPECT_EQ(cell(*window, "backupList", 0, 0), "12800");
    bar.setValue(bar.maximum());
    EXPECT_EQ(find<QTableView>(*window, "nowList").model()->rowCount(), 0);
    const int last = find<QTableView>(*window, "backupList").model()->rowCount() - 1;
    EXPECT_EQ(cell(*window, "backupList", last, 0), "99968");
}

TEST_F(Comparison, WithoutABackupShowsTheFileAndSaysHowToHaveOne) {
    world.set("Config5", "0");
    begin("one", "two");
    const auto window = open();
    EXPECT_EQ(cell(*window, "nowList", 0, 1), "two");
    EXPECT_EQ(cell(*window, "nowList", 0, 0, Qt::ToolTipRole), "");
    EXPECT_EQ(cell(*window, "backupList", 0, 1), "File was not backed up.");
    EXPECT_EQ(cell(*window, "backupList", 2, 1),
              "To enable comparison in future, change your settings with the 'Configuration' menu.");
    EXPECT_FALSE(find<QPushButton>(*window, "nextButton").isEnabled());
}

TEST_F(Comparison, TellsWhatCannotBeReadAndStaysOpen) {
    begin("one", "two");
    std::filesystem::remove(world.path("a"));
    std::filesystem::remove(world.data("Backup Files/Backup File 1"));
    const auto window = open();
    EXPECT_EQ(find<QTableView>(*window, "nowList").model()->rowCount(), 0);
    EXPECT_TRUE(find<QLabel>(*window, "statusLabel").text().endsWith("Reason: FileNotFound."));
    EXPECT_EQ(world.machine.ui.messages.size(), 1U);
    EXPECT_FALSE(find<QPushButton>(*window, "previousButton").isEnabled());
}

TEST_F(Comparison, ModelHoldsWhatModelsHaveToHold) {
    begin(std::string(1000, 'x'), std::string(700, 'x'));
    FileAnalysis analysis(world.vault(), world.context(), record);
    for (const auto side : {FileAnalysis::Side::Now, FileAnalysis::Side::Backup}) {
        AnalysisModel model(analysis, side, nullptr);
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        model.show(AnalysisView::Text, 0, 5);
        model.show(AnalysisView::Text, 1, 5);
        model.show(AnalysisView::Hex, 20, 50);
        EXPECT_EQ(model.rowCount(), side == FileAnalysis::Side::Now ? 2 : 12);
        model.show(AnalysisView::Hex, 1000, 50);
        EXPECT_EQ(model.rowCount(), 0);
    }
}

}  // namespace
}  // namespace corvalence::gui
