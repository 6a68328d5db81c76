#pragma once

#include <QWidget>
#include <functional>

#include "gui/views/list_table.h"
#include "gui/views/report_model.h"

class QLabel;
class QToolButton;

namespace corvalence::gui {

/// The report that a session shows: its title, its rows and where the user is in it.
class ReportView : public QWidget {
  public:
    /// The session is to outlive the view.
    explicit ReportView(shell::ReportSession& session, QWidget* parent = nullptr);

    /// The session shows another page or report: title and Page bar are to follow.
    std::function<void()> onChanged;

    /// To be called whenever something else than this view has moved the session.
    void refresh();
    // As the commands of these names.
    void showNext();
    void showPrevious();

    ListTable& table() noexcept { return *table_; }

  private:
    QToolButton* addButton(const char* name, const QString& text, const char* iconName);
    void addHeading(class QVBoxLayout& layout);

    shell::ReportSession& session_;
    ReportModel model_;
    QLabel* title_ = nullptr;
    QLabel* damage_ = nullptr;
    QLabel* position_ = nullptr;
    QToolButton* previous_ = nullptr;
    QToolButton* next_ = nullptr;
    ListTable* table_ = nullptr;
    const reports::ReportRow* fitted_ = nullptr;  // the kind that column widths were found for
};

}  // namespace corvalence::gui
