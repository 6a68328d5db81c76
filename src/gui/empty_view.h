#pragma once

#include <QWidget>

#include "gui/command_actions.h"

class QLabel;
class QToolButton;

namespace corvalence::gui {

/// What the window shows while there is no list: the mode, what it is for, and what can be done first.
class EmptyView : public QWidget {
  public:
    explicit EmptyView(const CommandActions& actions, QWidget* parent = nullptr);

    /// `database`: path of the open one, empty for none.
    void show(shell::Mode mode, const std::string& database);

  private:
    QToolButton* addButton(QAction* action);

    QLabel* picture_;
    QLabel* title_;
    QLabel* purpose_;
    QLabel* database_;
    QWidget* buttons_;
};

}  // namespace corvalence::gui
