#pragma once

#include <QAbstractTableModel>
#include <functional>

#include "files/file_analysis.h"

namespace corvalence::gui {

/// The rows of one side of a file analysis that are on screen. Of a file of any size there are no more rows
/// than fit, and only they are read.
class AnalysisModel : public QAbstractTableModel {
  public:
    AnalysisModel(files::FileAnalysis& analysis, files::FileAnalysis::Side side, QObject* parent);

    /// Called where a row cannot be read; it is shown empty.
    std::function<void(const std::string& why)> tellFailure;

    /// Shows at most `count` rows from the one of the number `first` on.
    void show(files::AnalysisView view, std::uint64_t first, int count);

    std::uint64_t first() const noexcept { return first_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    bool isNotBackedUp() const noexcept;
    std::uint64_t rowsInAll(files::AnalysisView view) const noexcept;
    QString text(int row, int column) const;
    std::optional<files::RowMark> mark(int row) const;
    QVariant accessibleText(const QModelIndex& index) const;

    files::FileAnalysis& analysis_;
    files::FileAnalysis::Side side_;
    files::AnalysisView view_ = files::AnalysisView::Text;
    std::uint64_t first_ = 0;
    int count_ = 0;
};

}  // namespace corvalence::gui
