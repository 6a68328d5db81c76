#pragma once

#include <QButtonGroup>
#include <QLayout>
#include <QRadioButton>
#include <QString>
#include <string_view>

#include "gui/support/text.h"

namespace corvalence::gui {

/// Adds one radio button a row of a table of choices, with the row's number as its id; `name` and that number
/// are its object name. The row of the number `checked` is chosen.
template <typename Rows, typename Text>
QButtonGroup* addRadioButtons(QLayout& layout, QWidget& parent, const char* name, const Rows& rows,
                              Text textOf, int checked) {
    auto* group = new QButtonGroup(&parent);
    int id = 0;
    for (const auto& row : rows) {
        auto* button = new QRadioButton(shownLines(textOf(row)), &parent);
        button->setObjectName(QLatin1String(name) + QString::number(id));
        button->setChecked(id == checked);
        group->addButton(button, id++);
        layout.addWidget(button);
    }
    return group;
}

}  // namespace corvalence::gui
