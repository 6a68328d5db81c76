#pragma once

#include <QHBoxLayout>
#include <QLabel>
#include <string_view>

#include "gui/support/colours.h"
#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

/// The heading of a window that warns: a sign, and the text in bold, "headingLabel".
inline QHBoxLayout* makeAlarmRow(std::string_view text, QWidget& parent) {
    constexpr int kSignSize = 32;
    auto* sign = new QLabel(&parent);
    sign->setPixmap(
        icon(QStringLiteral("warning")).pixmap(QSize(kSignSize, kSignSize), parent.devicePixelRatioF()));
    auto* heading = new QLabel(shownLines(text), &parent);
    heading->setObjectName(QStringLiteral("headingLabel"));
    heading->setTextFormat(Qt::PlainText);
    heading->setWordWrap(true);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    QPalette palette = heading->palette();
    palette.setColor(QPalette::WindowText, changedColour(palette));
    heading->setPalette(palette);
    auto* row = new QHBoxLayout;
    row->addWidget(sign, 0, Qt::AlignTop);
    row->addWidget(heading, 1);
    return row;
}

}  // namespace corvalence::gui
