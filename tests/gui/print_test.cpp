#include <gtest/gtest.h>

#include <QAbstractTableModel>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QTemporaryDir>
#include <set>

#include "driving.h"
#include "gui/views/row_roles.h"
#include "gui/views/table_printer.h"

namespace corvalence::gui {
namespace {

/// Rows of three columns, the last with texts of any length; remembers which rows were asked for.
class Rows : public QAbstractTableModel {
  public:
    Rows(int rows, int length) : rows_(rows), length_(length) {}
    int rowCount(const QModelIndex&) const override { return rows_; }
    int columnCount(const QModelIndex&) const override { return 3; }
    QVariant data(const QModelIndex& cell, int role) const override {
        if (role == PlainTextRole && cell.column() == 1) return QStringLiteral("Yes");
        if (role != Qt::DisplayRole) return {};
        asked.insert(cell.row());
        return cell.column() == 0 ? QString::number(cell.row()) : QString(length_, QLatin1Char('x'));
    }
    QVariant headerData(int section, Qt::Orientation, int role) const override {
        return role == Qt::DisplayRole ? QVariant(QStringLiteral("Column %1").arg(section)) : QVariant();
    }

    mutable std::set<int> asked;

  private:
    int rows_;
    int length_;
};

class Printing : public testing::Test {
  protected:
    /// Pages of the document that a list makes; -1 where its printing was ended.
    int print(const PrintedList& list, TablePrinter::Range range = {}, int cancelAt = -1) {
        const QString path = folder.filePath(QStringLiteral("list.pdf"));
        bool isDone = false;
        {
            QPdfWriter writer(path);
            QPainter painter(&writer);
            TablePrinter printer(writer, painter, list.title, range);
            int questions = 0;
            isDone = printer.print(list, [&](double done) {
                EXPECT_GE(done, 0);
                EXPECT_LT(done, 1);
                return ++questions == cancelAt;
            });
        }
        return isDone ? pagesOf(path) : -1;
    }
    int print(QAbstractItemModel& model, TablePrinter::Range range = {}, int cancelAt = -1) {
        return print({QStringLiteral("A list"), 1, [&](std::size_t) -> QAbstractItemModel& { return model; }},
                     range, cancelAt);
    }
    static int pagesOf(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        return static_cast<int>(bytes.count("/Type /Page\n"));
    }

    QTemporaryDir folder;
};

TEST_F(Printing, SetsEveryRowOnAsManyPagesAsItTakes) {
    Rows few(3, 10);
    EXPECT_EQ(print(few), 1);
    Rows none(0, 0);
    EXPECT_EQ(print(none), 1) << "a list without rows has its title";
    Rows many(1000, 10);
    const int pages = print(many);
    EXPECT_GT(pages, 5);
    EXPECT_EQ(many.asked.size(), 1000U);
    Rows wrapped(1000, 200);
    EXPECT_GT(print(wrapped), pages * 3 / 2) << "long cells take more lines";
    Rows endless(40, 100000);
    EXPECT_LE(print(endless), 10) << "but no page of its own";
    EXPECT_EQ(print(many, {2, 4}), 3);
    EXPECT_EQ(print(many, {pages, 0}), 1);
}

TEST_F(Printing, TakesTheShownPagesOfAListTogetherAndEndsOnCancel) {
    Rows first(30, 10), second(20, 10);
    const PrintedList list{QStringLiteral("Two"), 2, [&](std::size_t page) -> QAbstractItemModel& {
                               return page == 0 ? first : second;
                           }};
    EXPECT_EQ(print(list), 1);
    EXPECT_EQ(first.asked.size(), 30U);
    EXPECT_EQ(second.asked.size(), 20U);
    Rows many(1000, 10);
    EXPECT_EQ(print(many, {}, 500), -1);
    EXPECT_LT(many.asked.size(), 600U);
}

TEST_F(Printing, AsksWhereToAndMakesADocumentThere) {
    Rows rows(10, 10);
    const QString path = folder.filePath(QStringLiteral("chosen.pdf"));
    {
        test::WhenShown<QPrintDialog> choose([&](QPrintDialog& dialog) {
            EXPECT_EQ(dialog.printer()->docName(), "A list");
            dialog.printer()->setOutputFormat(QPrinter::PdfFormat);
            dialog.printer()->setOutputFileName(path);
            static_cast<QDialog&>(dialog).done(QDialog::Accepted);
        });
        printTable(rows, QStringLiteral("/srv/Databases/A list"), nullptr);
    }
    EXPECT_EQ(pagesOf(path), 1);
    test::WhenShown<QPrintDialog> leave([](QPrintDialog& dialog) { dialog.reject(); });
    printTable(rows, QStringLiteral("A list"), nullptr);
}

}  // namespace
}  // namespace corvalence::gui
