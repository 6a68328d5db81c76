#pragma once

#include <QAbstractItemModel>
#include <QString>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

class QPagedPaintDevice;
class QPainter;
class QWidget;

namespace corvalence::gui {

/// A list as it goes on paper: all its rows, in one model or, where a list is shown in pages, in one after
/// the other.
struct PrintedList {
    QString title;
    std::size_t pages = 1;
    /// The rows of page `page`, from 0; asked in order. Valid until the next one is asked for. May throw
    /// base::FileFailure and whatever else the list's own reading does.
    std::function<QAbstractItemModel&(std::size_t page)> page;
};

/// Sets a list on the pages of a device: columns fitted to the width of the page, long cells wrapped and, in
/// the end, cut; title, column titles and page number on every page.
class TablePrinter {
  public:
    /// The pages from `first` to `last`, from 1; 0: from the first, up to the last.
    struct Range {
        int first = 0;
        int last = 0;
    };

    TablePrinter(QPagedPaintDevice& device, QPainter& painter, QString title, Range range);

    /// Prints all rows; `isCancelled` is asked at least once a row. False where it said so, or the device
    /// fails.
    bool print(const PrintedList& list, const std::function<bool(double done)>& isCancelled);
    /// Pages set so far, those out of the range counted.
    int pages() const noexcept { return page_; }

  private:
    void fitColumns(const QAbstractItemModel& model);
    bool printRow(const QAbstractItemModel& model, int row);
    bool beginPage(const QAbstractItemModel& model);
    int heightOf(const QStringList& cells) const;
    void draw(const QStringList& cells, int height);
    QStringList cellsOf(const QAbstractItemModel& model, int row) const;
    bool isPrinted() const;

    QPagedPaintDevice& device_;
    QPainter& painter_;
    QString title_;
    Range range_;
    bool hasMarks_ = false;
    std::vector<int> widths_;
    QStringList titles_;
    int lineHeight_ = 0;
    int gap_ = 0;
    int pageWidth_ = 0;
    int pageHeight_ = 0;
    int page_ = 0;
    int y_ = 0;
    bool wasStarted_ = false;  // something is on the device
};

/// Asks for printer and pages and prints, with a progress window that can be cancelled. Failures of the
/// device are told. Throws what the list does.
void printTable(const PrintedList& list, QWidget* parent);
/// All rows of a model.
void printTable(QAbstractItemModel& model, const QString& title, QWidget* parent);

}  // namespace corvalence::gui
