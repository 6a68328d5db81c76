#pragma once

#include <QWidget>
#include <functional>

class QLabel;
class QToolButton;

namespace corvalence::gui {

/// Where in a list of several pages the user is, with an arrow to either side.
class PageBar : public QWidget {
  public:
    explicit PageBar(const QString& name, QWidget* parent = nullptr);

    std::function<void()> onPrevious = [] {};
    std::function<void()> onNext = [] {};

    /// `caption`: "Page: 2 of 5"; empty for no list.
    void setPage(const std::string& caption, bool hasPrevious, bool hasNext);

  private:
    QToolButton* addButton(const char* name, const QString& text, const char* iconName);

    QToolButton* previous_;
    QLabel* caption_;
    QToolButton* next_;
};

}  // namespace corvalence::gui
