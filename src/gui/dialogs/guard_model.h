#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "shell/folder_guard.h"

namespace corvalence::gui {

/// Entries of the folder's access list: account, domain, a yes or no for each right, and what the columns
/// leave unsaid.
class GuardModel : public QAbstractTableModel {
  public:
    using QAbstractTableModel::QAbstractTableModel;

    void setRows(std::vector<shell::GuardRow> rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& cell, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    std::vector<shell::GuardRow> rows_;
};

}  // namespace corvalence::gui
