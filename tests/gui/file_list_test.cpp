#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QUrl>
#include <QtTest/QTest>

#include "driving.h"
#include "files/database_copy.h"
#include "gui/views/dropped_files.h"
#include "gui/views/file_list_view.h"
#include "store/database_saving.h"
#include "world.h"

namespace corvalence::gui {
namespace {

/// A list over a database of as many records as a test wants.
class FileList : public testing::Test, public corvalence::test::World {
  protected:
    FileList() {
        create();
        open();
        view.resize(900, 300);
        view.show();
    }
    void list(std::size_t count) {
        store::saveDatabase(vault(), context(), [&](crypto::SealWriter& writer) {
            for (std::size_t number = 0; number < count; ++number) {
                platform::FileStatus status;
                status.size = number % 1000;
                const std::string path = "/folder/file " + std::to_string(number) + ".txt";
                writer.write(base::bytesOf(
                    files::FileRecord::of(path, std::string(64, 'a' + char(number % 6)), status).render()));
            }
        });
        view.files().open(vault(), context());
    }
    QString cell(int row, int column) { return model.index(row, column).data().toString(); }

    FileListView view;
    FileListModel& model = view.files();
};

TEST_F(FileList, ShowsThePagesOfADatabaseAndSortsWithinOne) {
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    set(settings::key::kPageSize, "1000");
    list(2500);
    EXPECT_EQ(model.caption(), "Page: 1 of 3");
    EXPECT_EQ(model.rowCount(), 1000);
    EXPECT_EQ(model.count(), 2500U);
    model.goToPage(3);
    EXPECT_EQ(model.rowCount(), 500);
    EXPECT_EQ(cell(0, 0), "file 2000.txt");
    EXPECT_EQ(cell(0, 4), "/folder/");
    EXPECT_EQ(cell(1, 2), "1");

    view.selectRow(7);
    view.sortByColumn(2, Qt::DescendingOrder);
    EXPECT_EQ(cell(0, 2), "499");
    EXPECT_EQ(view.selectedPaths(), std::vector<std::string>{"/folder/file 2007.txt"});
    EXPECT_EQ(model.key(view.selectedRows().front()),
              "/folder/file 2007.txt\x7F" + std::string(64, 'a' + 2007 % 6));
    model.goToPage(1);
    EXPECT_EQ(cell(0, 2), "999") << "the order holds for every page";
    view.sortByColumn(-1, Qt::AscendingOrder);
    EXPECT_EQ(cell(0, 0), "file 0.txt");

    model.goToPage(2);
    model.reload(vault(), context());
    EXPECT_EQ(model.page(), 2U);
    context().record.fileDigest = std::string(32, '0');
    EXPECT_THROW(model.reload(vault(), context()), files::DatabaseChanged);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_FALSE(model.isOpen());
}

TEST_F(FileList, HandsOnChosenRowsAsTextAndPathsByteForByte) {
    const std::string odd = std::string("tab\there") + (base::PathRules{}.separator == '/' ? "\xFF" : "");
    write(odd, "one");
    write("b.bin", "two two");
    add({odd, "b.bin"});
    view.files().open(vault(), context());
    view.selectAll();
    EXPECT_EQ(view.selectedPaths(), (std::vector{path(odd), path("b.bin")}));
    QKeyEvent copy(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
    QApplication::sendEvent(&view, &copy);
    const QStringList lines = QGuiApplication::clipboard()->text().split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0].count('\t'), 7);
    EXPECT_TRUE(lines[0].startsWith("tab\\there\\xff\t") || base::PathRules{}.separator != '/')
        << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains("\t7\t"));
    EXPECT_EQ(lines[1].section('\t', 4, 4).toStdString(), path(""));
}

TEST_F(FileList, TellsWhatIsDroppedAndAskedForAndThatNothingIsListed) {
    list(0);
    EXPECT_FALSE(view.emptyText().isEmpty());
    std::vector<std::string> dropped;
    QMimeData data;
    data.setUrls({QUrl("file:///tmp/a%20b%FF"), QUrl("https://somewhere/x"), QUrl::fromLocalFile("/tmp/ü")});
    const auto drop = [&] {
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &enter);
        QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    };
    drop();
    EXPECT_TRUE(dropped.empty());
    view.onDrop = [&](const std::vector<std::string>& paths) { dropped = paths; };
    drop();
    EXPECT_EQ(dropped, (std::vector<std::string>{"/tmp/a b\xFF", "/tmp/ü"}));

    list(3);
    int activated = -1;
    view.onActivated = [&](int row) { activated = row; };
    view.setCurrentIndex(model.index(1, 0));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(&view, &enter);
    EXPECT_EQ(activated, 1);
    QPoint asked;
    view.onContextMenu = [&](const QPoint& at) { asked = at; };
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(2, 2));
    QApplication::sendEvent(&view, &menu);
    EXPECT_EQ(asked, view.viewport()->mapToGlobal(view.visualRect(model.index(1, 0)).bottomLeft()));
}

// A digest lost its middle however wide the window was.
TEST_F(FileList, ShowsLongTextsWholeWhereThereIsRoom) {
    view.resize(3000, 400);
    view.show();
    list(2);
    const QString digest = model.index(0, 1).data().toString();
    EXPECT_GT(view.columnWidth(1), view.fontMetrics().horizontalAdvance(digest));
    const int whole = view.columnWidth(1);
    view.resize(300, 400);
    view.fitColumns();
    EXPECT_LT(view.columnWidth(1), whole);
}

TEST_F(FileList, GoesToItsFirstAndLastRowByOneKey) {
    list(3);
    view.show();
    view.setCurrentIndex(model.index(1, 2));
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(view.currentIndex(), model.index(2, 2));
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(view.currentIndex(), model.index(0, 2));
    EXPECT_EQ(view.selectedRows(), std::vector<int>{0});
}

TEST_F(FileList, OffersCopyingInItsMenu) {
    list(3);
    QMenu menu;
    view.addEditActions(menu);
    ASSERT_EQ(menu.actions().size(), 2);
    EXPECT_FALSE(menu.actions()[0]->isEnabled()) << "no row is chosen";
    menu.actions()[1]->trigger();
    QMenu again;
    view.addEditActions(again);
    again.actions()[0]->trigger();
    EXPECT_EQ(QApplication::clipboard()->text().count('\n'), 3);
}

TEST_F(FileList, TurnsItsColoursRoundAndBack) {
    list(3);
    const auto darkPixels = [&] {
        const QImage picture = view.viewport()->grab().toImage();
        return picture.pixelColor(picture.width() - 3, picture.height() - 3).lightness() < 128;
    };
    const bool wasDark = darkPixels();
    EXPECT_EQ(view.isDark(), wasDark);
    view.setInverted(true);
    EXPECT_EQ(darkPixels(), !wasDark);
    EXPECT_EQ(view.isDark(), !wasDark);
    QPalette desktop;
    desktop.setColor(QPalette::Window, wasDark ? Qt::white : Qt::black);
    desktop.setColor(QPalette::Base, wasDark ? Qt::white : Qt::black);
    const QPalette before = QApplication::palette();
    QApplication::setPalette(desktop);
    QCoreApplication::processEvents();
    EXPECT_EQ(darkPixels(), wasDark) << "round again when the desktop changes";
    QApplication::setPalette(before);
    QCoreApplication::processEvents();
    view.setInverted(false);
    EXPECT_EQ(darkPixels(), wasDark);
}

}  // namespace
}  // namespace corvalence::gui
