#pragma once

#include <QAbstractItemModel>

namespace corvalence::gui {

/// What the rows of the program's lists tell beside Qt's own roles.
enum RowRole : int {
    /// The text of a cell that shows a picture: for copies and prints. Where there is none, the text shown.
    PlainTextRole = Qt::UserRole + 1,
    /// Column 0: which of two rows about the same thing it is ("then", "now"); no text in other lists.
    MarkRole,
    /// Whether the cell is not as in the other of two rows.
    DiffersRole,
};

/// The cell as text, with nothing that would break a line of a table.
QString plainText(const QModelIndex& cell);
/// Whether the rows of a model have marks.
bool hasMarks(const QAbstractItemModel& model);

}  // namespace corvalence::gui
