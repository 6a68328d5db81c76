#pragma once

#include <QString>
#include <cstdint>
#include <string>
#include <string_view>

namespace corvalence::gui {

/// A text as a cell or a label shows it: base::shown(), line feeds escaped as well. Paths are bytes; what is
/// shown is never turned back into one.
QString shown(std::string_view text);
/// The same for a message of several lines.
QString shownLines(std::string_view text);
/// A counter, with the text that stands behind the number.
QString shownCount(std::uint64_t count, std::string_view text);
/// What a user typed, in UTF-8.
std::string bytesOf(const QString& text);
/// A path that a file dialog gave, with the separators of this system, as paths are shown and compared.
std::string chosenPath(const QString& chosen);

}  // namespace corvalence::gui
