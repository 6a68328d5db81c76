#pragma once

#include <QAbstractTableModel>
#include <QCache>
#include <QIcon>
#include <string>
#include <vector>

#include "shell/report_session.h"

namespace corvalence::gui {

/// The page of a report that a session shows, by the columns of its kind. Texts are made of a line when a
/// cell of it is shown.
class ReportModel : public QAbstractTableModel {
  public:
    /// The session is to outlive the model.
    explicit ReportModel(const shell::ReportSession& session, QObject* parent = nullptr);
    ~ReportModel() override;

    /// To be called whenever the session shows something else, before anything is asked.
    void refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& cell, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    struct Row {
        std::uint32_t line;  // of the page
        std::uint32_t part;  // where a line takes several rows
    };
    using Texts = std::vector<std::vector<std::string>>;

    bool isPaired() const noexcept;
    bool isNow(const Row& row) const { return session_.lineNumber(row.line) % 2 == 1; }
    const Texts& rowsOf(std::size_t line) const;
    /// Empty where the line has no such cell.
    std::string text(const Row& row, int column) const;
    bool isTick(int column) const;
    bool differs(const Row& row, int column) const;
    QVariant tickData(const std::string& text, int column, int role) const;

    const shell::ReportSession& session_;
    std::vector<Row> rows_;
    mutable QCache<std::size_t, Texts> texts_;  // of what was shown last
    QIcon kind_;
    QIcon yes_;
    QIcon no_;
};

}  // namespace corvalence::gui
