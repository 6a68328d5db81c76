#pragma once

#include <QTableView>
#include <QWidget>
#include <array>

#include "gui/dialogs/analysis_model.h"

class QScrollBar;

namespace corvalence::gui {

/// Both sides of a file analysis, side by side: one scroll bar moves both of them, and the row that is picked
/// in one is picked in the other. Rows are counted by the files, not by what is on screen.
class AnalysisLists : public QWidget {
  public:
    AnalysisLists(files::FileAnalysis& analysis, std::function<void(const std::string& why)> tellFailure);

    files::AnalysisView view() const noexcept { return view_; }
    /// Shows the same place of the file in another view.
    void setView(files::AnalysisView view);

    /// Picks a row and brings it on screen.
    void pick(std::uint64_t row);
    std::optional<std::uint64_t> picked() const noexcept { return picked_; }
    /// What whole rows of both sides take.
    int wholeWidth() const;
    /// The row at the top of the screen.
    std::uint64_t top() const noexcept { return top_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct List {
        AnalysisModel* model = nullptr;
        QTableView* table = nullptr;
    };

    void addList(std::size_t number, files::FileAnalysis::Side side, const char* label, const char* name);
    void addScrollBar();
    void linkSideways();
    std::uint64_t rowCount() const;
    int rowsThatFit() const;
    /// The first row at which the last one is on screen.
    std::uint64_t lastTop() const;
    /// `rows` further down, or up.
    void scrollBy(std::int64_t rows);
    bool scrollByKey(int key);
    void showFrom(std::uint64_t top);
    int offsetWidth() const;
    void fitColumns();
    void showPicked();

    files::FileAnalysis& analysis_;
    std::function<void(const std::string& why)> tellFailure_;
    files::AnalysisView view_ = files::AnalysisView::Text;
    std::uint64_t top_ = 0;
    std::optional<std::uint64_t> picked_;
    std::uint64_t rowsPerStep_ = 1;  // of the scroll bar, whose positions are no more than fit an int
    std::array<List, 2> lists_;
    QScrollBar* bar_ = nullptr;
};

}  // namespace corvalence::gui
