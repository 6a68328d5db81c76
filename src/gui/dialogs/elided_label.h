#pragma once

#include <QLabel>
#include <string_view>

class QFormLayout;
class QVBoxLayout;

namespace corvalence::gui {

/// A line of plain text that is as wide as its window lets it be: what does not fit is left out of its
/// middle, and the whole text stands in a tool tip then.
class ElidedLabel : public QLabel {
  public:
    explicit ElidedLabel(const QString& text = {}, QWidget* parent = nullptr);

    /// The whole text, where the label itself has but a part of it.
    void setWholeText(const QString& text) { whole_ = text; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    bool fits() const;

    QString whole_;
};

/// A path in up to three lines, with the object name "pathLabel" on the first.
void addPathLines(QVBoxLayout& layout, std::string_view path);

/// A label and a value whose text can be copied; its object name is "valueLabel" and its number.
void addValueRow(QFormLayout& form, std::string_view label, const QString& value);

}  // namespace corvalence::gui
