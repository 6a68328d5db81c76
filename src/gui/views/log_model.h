#pragma once

#include <QAbstractTableModel>
#include <QCache>
#include <QIcon>
#include <array>
#include <vector>

#include "schedule/log_view.h"

namespace corvalence::gui {

/// The lines of a log, read from it as they are shown.
class LogModel : public QAbstractTableModel {
  public:
    /// `title`: of the one column.
    explicit LogModel(const QString& title, QObject* parent = nullptr);
    ~LogModel() override;

    /// Shows a log, or none. It is to outlive the model, or until another is shown.
    void show(const schedule::LogView* log);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& cell, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    using Rows = std::vector<schedule::LogRow>;
    const schedule::LogRow& row(int number) const;

    QString title_;
    const schedule::LogView* log_ = nullptr;
    int rows_ = 0;
    mutable QCache<int, Rows> chunks_;  // of what was shown last
    std::array<QIcon, 9> icons_;        // by schedule::LogIcon
};

}  // namespace corvalence::gui
