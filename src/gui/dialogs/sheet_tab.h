#pragma once

#include <QWidget>
#include <functional>

#include "gui/support/help.h"
#include "shell/configuration_sheet.h"

class QCheckBox;
class QFormLayout;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QVBoxLayout;

namespace corvalence::gui {

/// A page of the configuration sheet: the header strip, the fields that a derived class adds, and "Help".
class SheetTab : public QWidget {
  public:
    SheetTab(const QString& header, const QString& iconName, const OpenHelp& openHelp, const QString& topic);

  protected:
    /// Where the fields go.
    QVBoxLayout& body() { return *body_; }
    /// A titled group at the end of the body.
    QVBoxLayout& addGroup(const QString& title);

    QCheckBox* addBox(QLayout& layout, const char* name, const QString& text, bool isChecked);
    QRadioButton* addRadio(QLayout& layout, const char* name, const QString& text, bool isChecked);
    /// A number's field in the range that the key takes on entry; texts before and behind it.
    QSpinBox* addNumber(QVBoxLayout& layout, const char* name, const QString& before, const QString& behind,
                        std::string_view key, int value);
    /// A text's field behind its label.
    void addText(QVBoxLayout& layout, QLineEdit* field, const char* name, const QString& label);
    /// The same with a button behind it.
    QPushButton* addBrowsed(QVBoxLayout& layout, QLineEdit* field, const char* name, const QString& label,
                            const char* buttonName, const QString& buttonText);

  private:
    QVBoxLayout* body_;
};

}  // namespace corvalence::gui
