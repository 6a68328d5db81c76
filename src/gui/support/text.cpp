#include "gui/support/text.h"

#include <QDir>

#include "base/shown_text.h"

namespace corvalence::gui {

QString shown(std::string_view text) {
    return QString::fromStdString(base::shown(text));
}

QString shownLines(std::string_view text) {
    return QString::fromStdString(base::shown(text, base::LineFeeds::Keep));
}

QString shownCount(std::uint64_t count, std::string_view text) {
    return shown(std::to_string(count).append(text)).trimmed();
}

std::string bytesOf(const QString& text) {
    return text.toStdString();
}

std::string chosenPath(const QString& chosen) {
    return bytesOf(QDir::toNativeSeparators(chosen));
}

}  // namespace corvalence::gui
