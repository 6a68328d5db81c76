#include "gui/dialogs/analysis_model.h"

#include <QApplication>
#include <QPalette>

#include "gui/support/colours.h"
#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

using files::AnalysisView;
using files::FileAnalysis;
using files::RowMark;

struct MarkRow {
    RowMark mark;
    const char* icon;
    const char* text;
};

constexpr int kOffset = 0;  // the first column; the last one is that of the text

constexpr MarkRow kMarks[] = {
    {RowMark::Equal, "mark-equal", "Equal to the backup."},
    {RowMark::Differs, "mark-differs", "Differs from the backup."},
    {RowMark::NoBackup, "mark-no-backup", "The backup has no such row."},
};

const MarkRow& markRow(RowMark mark) {
    for (const MarkRow& row : kMarks)
        if (row.mark == mark) return row;
    return kMarks[0];
}

}  // namespace

AnalysisModel::AnalysisModel(FileAnalysis& analysis, FileAnalysis::Side side, QObject* parent)
    : QAbstractTableModel(parent), analysis_(analysis), side_(side) {}

bool AnalysisModel::isNotBackedUp() const noexcept {
    return side_ == FileAnalysis::Side::Backup && analysis_.backup() == FileAnalysis::Backup::NotBackedUp;
}

std::uint64_t AnalysisModel::rowsInAll(AnalysisView view) const noexcept {
    return isNotBackedUp() ? files::kNotBackedUpRows.size() : analysis_.rowCount(side_, view);
}

void AnalysisModel::show(AnalysisView view, std::uint64_t first, int count) {
    const std::uint64_t all = rowsInAll(view);
    const auto rows = std::min<std::uint64_t>(all > first ? all - first : 0, static_cast<unsigned>(count));
    const bool isSameShape = static_cast<int>(rows) == count_ && view == view_;
    if (!isSameShape) beginResetModel();
    view_ = view;
    first_ = first;
    count_ = static_cast<int>(rows);
    if (!isSameShape) {
        endResetModel();
    } else if (count_ > 0) {
        dataChanged(index(0, 0), index(count_ - 1, columnCount() - 1));
    }
}

int AnalysisModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count_;
}

int AnalysisModel::columnCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    return view_ == AnalysisView::Text ? 2 : 3;
}

QString AnalysisModel::text(int row, int column) const {
    const std::uint64_t number = first_ + static_cast<std::uint64_t>(row);
    const bool isAscii = column == columnCount() - 1;
    if (isNotBackedUp()) {
        return isAscii ? shown(files::kNotBackedUpRows[static_cast<std::size_t>(number)]) : QString();
    }
    try {
        const auto cells = analysis_.row(side_, view_, number);
        if (!cells) return {};
        if (column == kOffset) return QString::fromStdString(cells->offset);
        return QString::fromStdString(isAscii ? cells->ascii : cells->hex);
    } catch (const base::FileFailure& failure) {
        if (tellFailure) tellFailure(failure.what());
        return {};
    }
}

std::optional<RowMark> AnalysisModel::mark(int row) const {
    if (side_ != FileAnalysis::Side::Now) return std::nullopt;
    try {
        return analysis_.mark(view_, first_ + static_cast<std::uint64_t>(row));
    } catch (const base::FileFailure& failure) {
        if (tellFailure) tellFailure(failure.what());
        return std::nullopt;
    }
}

QVariant AnalysisModel::accessibleText(const QModelIndex& index) const {
    const QString cell = text(index.row(), index.column());
    const auto rowMark = index.column() == kOffset ? mark(index.row()) : std::nullopt;
    return rowMark ? cell + QStringLiteral(": ") + QLatin1String(markRow(*rowMark).text) : cell;
}

QVariant AnalysisModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    switch (role) {
        case Qt::DisplayRole:
            return text(index.row(), index.column());
        case Qt::AccessibleTextRole:
            return accessibleText(index);
        case Qt::DecorationRole:
            if (index.column() != kOffset) break;
            if (const auto rowMark = mark(index.row())) return icon(QLatin1String(markRow(*rowMark).icon));
            break;
        case Qt::ToolTipRole:
            if (const auto rowMark = mark(index.row())) return QLatin1String(markRow(*rowMark).text);
            break;
        case Qt::ForegroundRole:
            if (const auto rowMark = mark(index.row()); rowMark && *rowMark != RowMark::Equal)
                return changedColour(QApplication::palette());
            break;
        default:
            break;
    }
    return {};
}

QVariant AnalysisModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    if (section == kOffset) return QStringLiteral("Offset");
    return section == columnCount() - 1 ? QStringLiteral("ASCII") : QStringLiteral("Bytes [Hex]");
}

}  // namespace corvalence::gui
