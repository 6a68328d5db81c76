#include "gui/support/colours.h"

namespace corvalence::gui {

namespace {

constexpr int kMiddle = 128;  // of the 0 to 255 of a lightness

}  // namespace

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < kMiddle;
}

// Contrast of at least 4.5 : 1 to the usual backgrounds (WCAG 2.1, 1.4.3).

QColor thenColour(const QPalette& palette) {
    return isDark(palette) ? QColor(0x8A, 0xB4, 0xF8) : QColor(0x0B, 0x3F, 0xB5);
}

QColor changedColour(const QPalette& palette) {
    return isDark(palette) ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB3, 0x1B, 0x1B);
}

}  // namespace corvalence::gui
