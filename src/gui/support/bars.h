#pragma once

class QProgressBar;

namespace corvalence::gui {

/// Whether the desktop brings a style of its own, other than those that look alike everywhere.
bool hasThemeStyle();
/// Whether bars that are made from now on have that style; plain ones have none of it.
void setThemedBars(bool isThemed);
/// For whatever layout or window it is put into.
QProgressBar* makeBar();

}  // namespace corvalence::gui
