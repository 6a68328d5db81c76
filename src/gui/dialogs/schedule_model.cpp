#include "gui/dialogs/schedule_model.h"

#include <array>

#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

struct Column {
    const char* title;
    std::string schedule::ScheduleRow::*text;
};

constexpr std::array<Column, 3> kColumns = {{{"Database Name", &schedule::ScheduleRow::name},
                                             {"Location", &schedule::ScheduleRow::location},
                                             {"Last Check", &schedule::ScheduleRow::lastCheck}}};

}  // namespace

void ScheduleModel::setRows(std::vector<schedule::ScheduleRow> rows) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

int ScheduleModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ScheduleModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(kColumns.size());
}

QVariant ScheduleModel::data(const QModelIndex& cell, int role) const {
    if (!cell.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
    const Column& column = kColumns[static_cast<std::size_t>(cell.column())];
    return shown(rows_[static_cast<std::size_t>(cell.row())].*column.text);
}

QVariant ScheduleModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
    return QString::fromLatin1(kColumns[static_cast<std::size_t>(section)].title);
}

}  // namespace corvalence::gui
