#include "gui/dialogs/analysis_lists.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <algorithm>
#include <limits>

namespace corvalence::gui {

namespace {

using files::AnalysisView;
using files::FileAnalysis;

constexpr int kRowsOfAWheelStep = 3;
constexpr int kMargin = 4;               // of a cell's text, in average characters, its mark included
constexpr int kCharactersOfAPair = 3;    // two digits and a blank
constexpr std::size_t kLeastOffset = 7;  // characters: the column's title
constexpr int kMarkRoom = 24;            // picture and margin
constexpr int kChosenShare = 70;         // of 255: what the chosen row has of the colour of choice

QColor blended(const QColor& ground, const QColor& colour) {
    const auto mixed = [](int a, int b) { return a + (b - a) * kChosenShare / 255; };
    return {mixed(ground.red(), colour.red()), mixed(ground.green(), colour.green()),
            mixed(ground.blue(), colour.blue())};
}

/// The chosen row is lightly shaded, so that its mark and what it says of a difference can be seen.
void shadeChoice(QTableView& table) {
    QPalette colours = table.palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        colours.setColor(group, QPalette::Highlight,
                         blended(colours.color(group, QPalette::Base), colours.color(QPalette::Highlight)));
        colours.setColor(group, QPalette::HighlightedText, colours.color(group, QPalette::Text));
    }
    table.setPalette(colours);
}

void prepare(QTableView& table) {
    shadeChoice(table);
    table.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    table.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::SingleSelection);
    table.setWordWrap(false);
    table.setShowGrid(false);
    table.setTabKeyNavigation(false);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + 2);
    table.horizontalHeader()->setHighlightSections(false);
    table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

}  // namespace

AnalysisLists::AnalysisLists(FileAnalysis& analysis, std::function<void(const std::string& why)> tellFailure)
    : analysis_(analysis), tellFailure_(std::move(tellFailure)) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins({});
    addList(0, FileAnalysis::Side::Now, "File &now:", "nowList");
    addList(1, FileAnalysis::Side::Backup, "&Backup file:", "backupList");
    linkSideways();
    addScrollBar();
    showFrom(0);
}

void AnalysisLists::addList(std::size_t number, FileAnalysis::Side side, const char* label,
                            const char* name) {
    List& list = lists_[number];
    list.table = new QTableView(this);
    list.table->setObjectName(QLatin1String(name));
    prepare(*list.table);
    list.model = new AnalysisModel(analysis_, side, this);
    list.model->tellFailure = tellFailure_;
    list.table->setModel(list.model);
    auto* title = new QLabel(QLatin1String(label), this);
    title->setBuddy(list.table);
    list.table->setAccessibleName(title->text().remove(QLatin1Char('&')));
    list.table->installEventFilter(this);
    list.table->viewport()->installEventFilter(this);
    connect(list.table, &QTableView::clicked, this, [this, &list](const QModelIndex& index) {
        picked_ = list.model->first() + static_cast<std::uint64_t>(index.row());
        showPicked();
    });
    auto* grid = static_cast<QGridLayout*>(layout());
    grid->addWidget(title, 0, static_cast<int>(number));
    grid->addWidget(list.table, 1, static_cast<int>(number));
}

void AnalysisLists::linkSideways() {
    QScrollBar* left = lists_[0].table->horizontalScrollBar();
    QScrollBar* right = lists_[1].table->horizontalScrollBar();
    connect(left, &QScrollBar::valueChanged, right, &QScrollBar::setValue);
    connect(right, &QScrollBar::valueChanged, left, &QScrollBar::setValue);
}

void AnalysisLists::addScrollBar() {
    bar_ = new QScrollBar(Qt::Vertical, this);
    bar_->setObjectName(QStringLiteral("rowsBar"));
    connect(bar_, &QScrollBar::valueChanged, this, [this](int value) {
        showFrom(value == bar_->maximum() ? lastTop() : static_cast<std::uint64_t>(value) * rowsPerStep_);
    });
    static_cast<QGridLayout*>(layout())->addWidget(bar_, 1, 2);
}

std::uint64_t AnalysisLists::rowCount() const {
    const std::uint64_t rows = analysis_.rowCount(view_);
    const bool hasNote = analysis_.backup() == FileAnalysis::Backup::NotBackedUp;
    return hasNote ? std::max<std::uint64_t>(rows, files::kNotBackedUpRows.size()) : rows;
}

int AnalysisLists::rowsThatFit() const {
    const QTableView& table = *lists_[0].table;
    return std::max(table.viewport()->height() / table.verticalHeader()->defaultSectionSize(), 1);
}

std::uint64_t AnalysisLists::lastTop() const {
    const auto fit = static_cast<std::uint64_t>(rowsThatFit());
    return rowCount() > fit ? rowCount() - fit : 0;
}

void AnalysisLists::showFrom(std::uint64_t top) {
    top_ = std::min(top, lastTop());
    for (const List& list : lists_)
        list.model->show(view_, top_, rowsThatFit());
    rowsPerStep_ = lastTop() / std::numeric_limits<int>::max() + 1;
    const QSignalBlocker quiet(bar_);
    bar_->setRange(0, static_cast<int>(lastTop() / rowsPerStep_));
    bar_->setPageStep(static_cast<int>(static_cast<std::uint64_t>(rowsThatFit()) / rowsPerStep_) + 1);
    bar_->setValue(static_cast<int>(top_ / rowsPerStep_));
    fitColumns();
    showPicked();
}

int AnalysisLists::offsetWidth() const {
    const std::size_t digits = std::max(std::to_string(analysis_.size()).size(), kLeastOffset);
    return static_cast<int>(digits + 1) * lists_[0].table->fontMetrics().averageCharWidth() + kMarkRoom;
}

int AnalysisLists::wholeWidth() const {
    const auto row = static_cast<int>(files::rowWidth(AnalysisView::Text)) + 2 * kMargin;
    return 2 * (offsetWidth() + row * lists_[0].table->fontMetrics().averageCharWidth());
}

void AnalysisLists::fitColumns() {
    for (const List& list : lists_) {
        const int character = list.table->fontMetrics().averageCharWidth();
        const int last = list.model->columnCount() - 1;
        const auto width = static_cast<int>(files::rowWidth(view_));
        list.table->setColumnWidth(0, offsetWidth());
        if (last > 1) list.table->setColumnWidth(1, (width * kCharactersOfAPair + kMargin) * character);
        list.table->setColumnWidth(last, (width + kMargin) * character);
    }
}

void AnalysisLists::showPicked() {
    for (const List& list : lists_) {
        const bool isOnScreen = picked_ && *picked_ >= top_ &&
                                *picked_ - top_ < static_cast<std::uint64_t>(list.model->rowCount());
        list.table->clearSelection();
        if (isOnScreen) list.table->selectRow(static_cast<int>(*picked_ - top_));
    }
}

void AnalysisLists::setView(AnalysisView view) {
    const auto there = [&](std::uint64_t row) {
        return row * files::rowWidth(view_) / files::rowWidth(view);
    };
    const bool wasOnScreen = !lists_[0].table->selectionModel()->selectedRows().isEmpty();
    const std::uint64_t top = there(top_);
    if (picked_) picked_ = there(*picked_);
    view_ = view;
    showFrom(top);
    if (picked_ && wasOnScreen) pick(*picked_);
}

void AnalysisLists::pick(std::uint64_t row) {
    picked_ = row;
    const auto fit = static_cast<std::uint64_t>(rowsThatFit());
    const bool isOnScreen = row >= top_ && row - top_ < fit;
    showFrom(isOnScreen ? top_ : row - std::min(row, fit / 2));
}

void AnalysisLists::scrollBy(std::int64_t rows) {
    const auto distance = static_cast<std::uint64_t>(rows < 0 ? -rows : rows);
    showFrom(rows < 0 ? top_ - std::min(top_, distance) : top_ + distance);
}

bool AnalysisLists::scrollByKey(int key) {
    switch (key) {
        case Qt::Key_Up:
            scrollBy(-1);
            return true;
        case Qt::Key_Down:
            scrollBy(1);
            return true;
        case Qt::Key_PageUp:
            scrollBy(-rowsThatFit());
            return true;
        case Qt::Key_PageDown:
            scrollBy(rowsThatFit());
            return true;
        case Qt::Key_Home:
            showFrom(0);
            return true;
        case Qt::Key_End:
            showFrom(lastTop());
            return true;
        default:
            return false;
    }
}

bool AnalysisLists::eventFilter(QObject* watched, QEvent* event) {
    if (bar_ == nullptr) return false;
    switch (event->type()) {
        case QEvent::KeyPress:
            if (scrollByKey(static_cast<QKeyEvent*>(event)->key())) return true;
            break;
        case QEvent::Wheel: {
            const int turned = static_cast<QWheelEvent*>(event)->angleDelta().y();
            if (turned == 0) break;  // sideways
            scrollBy(-turned * kRowsOfAWheelStep / QWheelEvent::DefaultDeltasPerStep);
            return true;
        }
        case QEvent::Resize:
            if (watched == lists_[0].table->viewport()) showFrom(top_);
            break;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace corvalence::gui
