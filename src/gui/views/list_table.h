#pragma once

#include <QTableView>
#include <functional>
#include <string>
#include <vector>

class QMenu;

namespace corvalence::gui {

/// A list of rows: any number of them is shown at once, since only what is on screen is asked for. Rows are
/// chosen singly, in ranges and one by one, and copied as text with tabs between the columns.
class ListTable : public QTableView {
  public:
    explicit ListTable(QWidget* parent = nullptr);

    /// Where the user asks for a menu, by mouse or key, in coordinates of the screen. Until it is set, the
    /// menu is that of addEditActions().
    std::function<void(const QPoint& at)> onContextMenu;
    /// A row on which Enter was pressed or that was clicked twice.
    std::function<void(int row)> onActivated;
    /// Files and folders dropped onto the list. Nothing is taken until it is set.
    std::function<void(const std::vector<std::string>& paths)> onDrop;
    /// The chosen rows are others than before.
    std::function<void()> onSelectionChanged;
    /// The list has got another size.
    std::function<void()> onResized;

    void setModel(QAbstractItemModel* model) override;

    /// Light text on dark, or the other way round: the opposite of the desktop's own colours.
    void setInverted(bool inverted);
    bool isInverted() const noexcept { return isInverted_; }
    /// Whether text is light on dark now.
    bool isDark() const;

    /// Told in the middle of a list without rows.
    void setEmptyText(const QString& text);
    QString emptyText() const { return emptyText_; }

    /// Widths by what the first rows show. A column that a long text would widen too much keeps to a limit,
    /// but where there is room for all.
    void fitColumns();

    /// What the cells of a column that are on screen need.
    int widthOnScreen(int column) const;

    /// In their order on screen.
    std::vector<int> selectedRows() const;
    /// The chosen rows, a line each.
    QString selectedText() const;
    void copySelected() const;
    /// "Copy" and "Select All", which every menu of a list has.
    void addEditActions(QMenu& menu);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

  private:
    int widthOf(int column, int firstRow, int rows) const;
    void setRowHeight();
    void applyColours();
    void placeMarks();

    bool isInverted_ = false;
    QString emptyText_;
};

}  // namespace corvalence::gui
