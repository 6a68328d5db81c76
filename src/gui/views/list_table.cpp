#include "gui/views/list_table.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "gui/support/colours.h"
#include "gui/views/dropped_files.h"
#include "gui/views/row_roles.h"

namespace corvalence::gui {

namespace {

constexpr int kMeasuredRows = 60;      // what the first screen shows
constexpr int kWidestCharacters = 60;  // of a column that fits itself
constexpr int kMarkMargin = 16;
constexpr int kCellMargin = 8;
const QLatin1String kWidestMark("then");

bool isNow(const QModelIndex& cell) {
    return cell.siblingAtColumn(0).data(MarkRole).toString() == QLatin1String("now");
}

/// Tells two rows about the same thing apart: by shading, and what differs in bold or, where it is a picture,
/// in a frame.
class RowDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& cell) const override {
        QStyledItemDelegate::paint(painter, option, cell);
        if (!cell.data(DiffersRole).toBool() || cell.data(Qt::DisplayRole).isValid()) return;
        painter->save();
        painter->setPen(QPen(colourOf(option.palette, cell), 2));
        painter->drawRect(option.rect.adjusted(2, 2, -3, -3));
        painter->restore();
    }

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& cell) const override {
        QStyledItemDelegate::initStyleOption(option, cell);
        option->textElideMode = Qt::ElideMiddle;
        if (isNow(cell)) option->backgroundBrush = option->palette.alternateBase();
        if (!cell.data(DiffersRole).toBool()) return;
        option->font.setBold(true);
        option->palette.setColor(QPalette::Text, colourOf(option->palette, cell));
    }

  private:
    static QColor colourOf(const QPalette& palette, const QModelIndex& cell) {
        return isNow(cell) ? changedColour(palette) : thenColour(palette);
    }
};

/// Light text on dark for a light palette, and the other way round.
QPalette invertedPalette(const QPalette& plain) {
    const bool toDark = !isDark(plain);
    QPalette inverted = plain;
    const QColor back = toDark ? QColor(0x1E, 0x1F, 0x22) : QColor(Qt::white);
    const QColor text = toDark ? QColor(0xE6, 0xE6, 0xE6) : QColor(Qt::black);
    for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Window})
        inverted.setColor(role, back);
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText})
        inverted.setColor(role, text);
    inverted.setColor(QPalette::AlternateBase, toDark ? back.lighter(150) : back.darker(106));
    return inverted;
}

}  // namespace

QString plainText(const QModelIndex& cell) {
    QVariant text = cell.data(PlainTextRole);
    if (!text.isValid()) text = cell.data(Qt::DisplayRole);
    return text.toString().replace(QLatin1Char('\t'), QLatin1Char(' '));
}

bool hasMarks(const QAbstractItemModel& model) {
    return model.rowCount() > 0 && model.index(0, 0).data(MarkRole).isValid();
}

ListTable::ListTable(QWidget* parent) : QTableView(parent) {
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setWordWrap(false);
    setShowGrid(false);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);  // Tab leaves the list
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setItemDelegate(new RowDelegate(this));
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setHighlightSections(false);
    verticalHeader()->hide();
    setRowHeight();
    connect(this, &QAbstractItemView::activated, this, [this](const QModelIndex& cell) {
        if (onActivated) onActivated(cell.row());
    });
}

void ListTable::setModel(QAbstractItemModel* model) {
    QTableView::setModel(model);
    if (model == nullptr) return;
    connect(model, &QAbstractItemModel::modelReset, this, [this] { placeMarks(); });
    placeMarks();
}

void ListTable::placeMarks() {
    const bool isMarked = hasMarks(*model());
    verticalHeader()->setVisible(isMarked);
    if (isMarked) verticalHeader()->setFixedWidth(fontMetrics().horizontalAdvance(kWidestMark) + kMarkMargin);
}

void ListTable::setRowHeight() {
    const int height = std::max(fontMetrics().height(), style()->pixelMetric(QStyle::PM_SmallIconSize)) + 4;
    verticalHeader()->setMinimumSectionSize(height);
    verticalHeader()->setDefaultSectionSize(height);
}

bool ListTable::isDark() const {
    return gui::isDark(palette());
}

void ListTable::setInverted(bool inverted) {
    if (inverted == isInverted_) return;
    isInverted_ = inverted;
    applyColours();
}

void ListTable::applyColours() {
    setPalette(QPalette());  // the desktop's, whatever it is now
    const QPalette plain = palette();
    const std::initializer_list<QWidget*> frame = {horizontalHeader(), verticalHeader(),
                                                   horizontalScrollBar(), verticalScrollBar()};
    for (QWidget* part : frame)
        part->setPalette(isInverted_ ? plain : QPalette());
    if (isInverted_) setPalette(invertedPalette(plain));
    viewport()->update();
}

void ListTable::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) setRowHeight();
}

void ListTable::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    if (onResized) onResized();
}

bool ListTable::event(QEvent* event) {
    const bool isHandled = QTableView::event(event);
    if (event->type() == QEvent::ApplicationPaletteChange && isInverted_) applyColours();
    return isHandled;
}

void ListTable::setEmptyText(const QString& text) {
    if (text == emptyText_) return;
    emptyText_ = text;
    setAccessibleDescription(text);
    viewport()->update();
}

void ListTable::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (emptyText_.isEmpty() || (model() != nullptr && model()->rowCount() > 0)) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWrapAnywhere,
                     emptyText_);
}

int ListTable::widthOf(int column, int firstRow, int rows) const {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    int width = 0;
    for (int row = firstRow; row < std::min(firstRow + rows, model()->rowCount()); ++row)
        width = std::max(width, itemDelegate()->sizeHint(option, model()->index(row, column)).width());
    return width;
}

int ListTable::widthOnScreen(int column) const {
    const int rows = viewport()->height() / verticalHeader()->defaultSectionSize() + 2;
    return widthOf(column, std::max(0, rowAt(0)), rows);
}

void ListTable::fitColumns() {
    if (model() == nullptr) return;
    const int widest = fontMetrics().averageCharWidth() * kWidestCharacters;
    std::vector<int> needed;
    int room = viewport()->width();
    for (int column = 0; column < model()->columnCount(); ++column) {
        const int cells = widthOf(column, 0, kMeasuredRows) + kCellMargin;
        needed.push_back(std::max(cells, horizontalHeader()->sectionSizeHint(column)));
        room -= std::min(needed.back(), widest);
    }
    // What the others leave is for those that the limit cuts.
    for (int column = 0; column < model()->columnCount(); ++column) {
        const int need = needed[static_cast<std::size_t>(column)];
        const int more = std::clamp(need - widest, 0, std::max(room, 0));
        room -= more;
        setColumnWidth(column, std::min(need, widest + more));
    }
}

std::vector<int> ListTable::selectedRows() const {
    std::vector<int> rows;
    if (selectionModel() == nullptr) return rows;
    // By ranges: a list of indexes takes a place for each cell.
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

QString ListTable::selectedText() const {
    QString text;
    const std::vector<int> rows = selectedRows();
    if (rows.empty()) return text;
    const bool isMarked = hasMarks(*model());
    for (const int row : rows) {
        if (isMarked) text += model()->index(row, 0).data(MarkRole).toString() + QLatin1Char('\t');
        for (int column = 0; column < model()->columnCount(); ++column) {
            if (column > 0) text += QLatin1Char('\t');
            text += plainText(model()->index(row, column));
        }
        text += QLatin1Char('\n');
    }
    return text;
}

void ListTable::copySelected() const {
    const QString text = selectedText();
    if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void ListTable::addEditActions(QMenu& menu) {
    // The list handles the keys itself; the menu only tells them.
    const auto add = [&](const QString& text, QKeySequence::StandardKey keys,
                         const std::function<void()>& act) {
        const QString told = QKeySequence(keys).toString(QKeySequence::NativeText);
        QAction* action = menu.addAction(text + QLatin1Char('\t') + told);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    add(QStringLiteral("&Copy"), QKeySequence::Copy, [this] {
        copySelected();
    })->setEnabled(!selectedRows().empty());
    add(QStringLiteral("Select A&ll"), QKeySequence::SelectAll, [this] {
        selectAll();
    })->setEnabled(model() != nullptr && model()->rowCount() > 0);
}

void ListTable::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    if (onSelectionChanged) onSelectionChanged();
}

void ListTable::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copySelected();
        event->accept();
    } else {
        QTableView::keyPressEvent(event);
    }
}

/// Rows are what is gone through: to the first and the last of them, where a table goes to the ends of a row.
QModelIndex ListTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const bool isToAnEnd = action == MoveHome || action == MoveEnd;
    if (!isToAnEnd || model() == nullptr || model()->rowCount() == 0)
        return QTableView::moveCursor(action, modifiers);
    const int row = action == MoveHome ? 0 : model()->rowCount() - 1;
    return model()->index(row, std::max(currentIndex().column(), 0));
}

void ListTable::contextMenuEvent(QContextMenuEvent* event) {
    QPoint at = event->globalPos();
    // By the key the menu opens at the row that it is about.
    if (event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid())
        at = viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
    event->accept();
    if (onContextMenu) {
        onContextMenu(at);
        return;
    }
    QMenu menu(this);
    addEditActions(menu);
    menu.exec(at);
}

void ListTable::dragEnterEvent(QDragEnterEvent* event) {
    if (onDrop && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void ListTable::dragMoveEvent(QDragMoveEvent* event) {
    if (onDrop && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void ListTable::dropEvent(QDropEvent* event) {
    const std::vector<std::string> paths = pathsOf(*event->mimeData());
    if (!onDrop || paths.empty()) return;
    event->setDropAction(Qt::CopyAction);  // never a move: the files stay where they are
    event->accept();
    onDrop(paths);
}

}  // namespace corvalence::gui
