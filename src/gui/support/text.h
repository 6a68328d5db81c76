#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace corvalence::gui {

/// A text as a cell or a label shows it: base::shown(), line feeds escaped as well. Paths are bytes; what is
/// shown is never turned back into one.
QString shown(std::string_view text);
/// The same for a message of several lines.
QString shownLines(std::string_view text);
/// What a user typed or chose, in UTF-8.
std::string bytesOf(const QString& text);

}  // namespace corvalence::gui
