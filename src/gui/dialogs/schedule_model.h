#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "schedule/schedule_dialog.h"

namespace corvalence::gui {

/// The scheduled databases as rows of name, location and last check.
class ScheduleModel : public QAbstractTableModel {
  public:
    using QAbstractTableModel::QAbstractTableModel;

    void setRows(std::vector<schedule::ScheduleRow> rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& cell, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    std::vector<schedule::ScheduleRow> rows_;
};

}  // namespace corvalence::gui
