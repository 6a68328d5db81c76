#pragma once

#include <QLineEdit>

#include "core/masked_entry.h"

namespace corvalence::gui {

/// The field of a core::MaskedEntry. What is typed goes to the entry and never into the field, which holds
/// nothing but stars: there is no caret, no undo, no drag, no menu, and an input method gets no text to keep.
class MaskedEdit : public QLineEdit {
  public:
    explicit MaskedEdit(QWidget* parent = nullptr);

    core::MaskedEntry& entry() noexcept { return entry_; }
    /// Empties entry and field.
    void startAgain();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent*) override {}
    void mouseDoubleClickEvent(QMouseEvent*) override {}

  private:
    /// One character by the rule of typing, more of them whole or not at all.
    void take(const QString& text, bool isPasted);
    void showStars();

    core::MaskedEntry entry_;
};

}  // namespace corvalence::gui
