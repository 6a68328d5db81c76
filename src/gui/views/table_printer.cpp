#include "gui/views/table_printer.h"

#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextOption>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "gui/views/row_roles.h"

namespace corvalence::gui {

namespace {

constexpr int kMeasuredRows = 200;
constexpr int kMostLines = 8;  // of a cell
constexpr int kNarrowest = 5;  // characters of a column
constexpr int kFooterLines = 2;
constexpr double kPointSize = 8;
constexpr int kLongestCell = 4000;  // characters

/// Shares `room` out: columns that need less than an equal share get what they need, the others the rest in
/// proportion to their needs.
void shareOut(std::vector<int>& widths, int room, int narrowest) {
    std::vector<int> needs = widths;
    std::int64_t wanted = std::accumulate(needs.begin(), needs.end(), std::int64_t{0});
    if (wanted <= room || widths.empty()) return;
    std::vector<bool> isSettled(needs.size(), false);
    std::int64_t left = room;
    for (bool changed = true; changed;) {
        changed = false;
        const auto open = std::count(isSettled.begin(), isSettled.end(), false);
        if (open == 0) return;
        const std::int64_t fair = left / open;
        for (std::size_t at = 0; at < needs.size(); ++at) {
            if (isSettled[at] || needs[at] > fair) continue;
            isSettled[at] = changed = true;
            left -= needs[at];
            wanted -= needs[at];
        }
    }
    for (std::size_t at = 0; at < needs.size(); ++at) {
        if (!isSettled[at])
            widths[at] = std::max<int>(narrowest, static_cast<int>(left * needs[at] / wanted));
    }
}

/// Between words, or where a word is too long anywhere.
QTextOption wrapped() {
    QTextOption option(Qt::AlignLeft | Qt::AlignTop);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

QFont bold(QFont font) {
    font.setBold(true);
    return font;
}

}  // namespace

TablePrinter::TablePrinter(QPagedPaintDevice& device, QPainter& painter, QString title, Range range)
    : device_(device), painter_(painter), title_(std::move(title)), range_(range) {
    QFont font = painter_.font();
    font.setPointSizeF(kPointSize);
    painter_.setFont(font);
    const QFontMetrics metrics = painter_.fontMetrics();
    lineHeight_ = metrics.lineSpacing();
    gap_ = metrics.averageCharWidth();
    pageWidth_ = painter_.viewport().width();
    pageHeight_ = painter_.viewport().height() - kFooterLines * lineHeight_;
}

bool TablePrinter::isPrinted() const {
    return page_ >= range_.first && (range_.last == 0 || page_ <= range_.last);
}

QStringList TablePrinter::cellsOf(const QAbstractItemModel& model, int row) const {
    QStringList cells;
    if (hasMarks_) cells.append(model.index(row, 0).data(MarkRole).toString());
    for (int column = 0; column < model.columnCount(); ++column)
        cells.append(plainText(model.index(row, column)));
    return cells;
}

void TablePrinter::fitColumns(const QAbstractItemModel& model) {
    hasMarks_ = gui::hasMarks(model);
    titles_.clear();
    if (hasMarks_) titles_.append(QString());
    for (int column = 0; column < model.columnCount(); ++column)
        titles_.append(model.headerData(column, Qt::Horizontal).toString().trimmed());
    widths_.clear();
    for (const QString& title : titles_)
        widths_.push_back(QFontMetrics(bold(painter_.font()), painter_.device()).horizontalAdvance(title) +
                          2 * gap_);
    const QFontMetrics metrics = painter_.fontMetrics();
    for (int row = 0; row < std::min(model.rowCount(), kMeasuredRows); ++row) {
        const QStringList cells = cellsOf(model, row);
        for (qsizetype at = 0; at < cells.size(); ++at) {
            int& width = widths_[static_cast<std::size_t>(at)];
            width = std::max(width, metrics.horizontalAdvance(cells[at].left(500)) + 2 * gap_);
        }
    }
    shareOut(widths_, pageWidth_, kNarrowest * gap_);
    // What the narrowest columns took too much of.
    const int all = std::accumulate(widths_.begin(), widths_.end(), 0);
    if (all > pageWidth_) {
        for (int& width : widths_)
            width = width * pageWidth_ / all;
    }
}

int TablePrinter::heightOf(const QStringList& cells) const {
    int height = lineHeight_;
    const QFontMetrics metrics = painter_.fontMetrics();
    for (qsizetype at = 0; at < cells.size(); ++at) {
        const int width = widths_[static_cast<std::size_t>(at)] - gap_;
        if (metrics.horizontalAdvance(cells[at].left(500)) <= width) continue;
        const QRectF room(0, 0, width, pageHeight_);
        const QRectF taken = painter_.boundingRect(room, cells[at].left(kLongestCell), wrapped());
        height = std::max(height, static_cast<int>(std::ceil(taken.height())));
    }
    return std::min(height, kMostLines * lineHeight_);
}

void TablePrinter::draw(const QStringList& cells, int height) {
    int x = 0;
    for (qsizetype at = 0; at < cells.size(); ++at) {
        const int width = widths_[static_cast<std::size_t>(at)];
        painter_.drawText(QRectF(x, y_, width - gap_, height), cells[at].left(kLongestCell), wrapped());
        x += width;
    }
}

bool TablePrinter::beginPage(const QAbstractItemModel& model) {
    ++page_;
    y_ = 0;
    const bool isPrintedPage = isPrinted();
    if (isPrintedPage && wasStarted_ && !device_.newPage()) return false;
    wasStarted_ = wasStarted_ || isPrintedPage;
    if (titles_.isEmpty()) fitColumns(model);
    const QFont plain = painter_.font();
    painter_.setFont(bold(plain));
    const int titleHeight = heightOf(titles_);
    if (isPrintedPage) {
        painter_.drawText(QRect(0, 0, pageWidth_, lineHeight_), Qt::AlignLeft,
                          painter_.fontMetrics().elidedText(title_, Qt::ElideMiddle, pageWidth_));
        y_ = 2 * lineHeight_;
        draw(titles_, titleHeight);
        const int line = y_ + titleHeight;
        painter_.drawLine(0, line, pageWidth_, line);
    }
    painter_.setFont(plain);
    if (isPrintedPage) {
        painter_.drawText(QRect(0, pageHeight_ + lineHeight_, pageWidth_, lineHeight_), Qt::AlignCenter,
                          QStringLiteral("Page %1").arg(page_));
    }
    y_ = 2 * lineHeight_ + titleHeight + lineHeight_ / 2;
    return true;
}

bool TablePrinter::printRow(const QAbstractItemModel& model, int row) {
    const QStringList cells = cellsOf(model, row);
    const int height = heightOf(cells);
    if ((page_ == 0 || y_ + height > pageHeight_) && !beginPage(model)) return false;
    if (isPrinted()) draw(cells, height);
    y_ += height;
    return true;
}

bool TablePrinter::print(const PrintedList& list, const std::function<bool(double done)>& isCancelled) {
    for (std::size_t page = 0; page < list.pages; ++page) {
        const QAbstractItemModel& model = list.page(page);
        if (page == 0) fitColumns(model);
        const int rows = model.rowCount();
        for (int row = 0; row < rows; ++row) {
            const double done = (static_cast<double>(page) + static_cast<double>(row) / rows) /
                                static_cast<double>(list.pages);
            if (isCancelled(done) || !printRow(model, row)) return false;
            if (range_.last > 0 && page_ > range_.last) return true;
        }
        if (page_ == 0 && page + 1 == list.pages) return beginPage(model);  // a list without rows
    }
    return true;
}

}  // namespace corvalence::gui
