#pragma once

#include <QColor>
#include <QPalette>

namespace corvalence::gui {

// Text colours that can be read on the palette's own background, light or dark.

/// Of what a record says.
QColor thenColour(const QPalette& palette);
/// Of what is not as the record says.
QColor changedColour(const QPalette& palette);
/// Whether the palette's background is dark.
bool isDark(const QPalette& palette);

}  // namespace corvalence::gui
