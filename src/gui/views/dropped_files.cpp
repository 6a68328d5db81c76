#include "gui/views/dropped_files.h"

#include <QUrl>

#include "base/utf8.h"
#include "gui/support/text.h"

namespace corvalence::gui {

std::vector<std::string> pathsOf(const QMimeData& data) {
    std::vector<std::string> paths;
    for (const QUrl& url : data.urls()) {
        if (!url.isLocalFile()) continue;
        // A name need not be UTF-8, and a QString holds no other.
        const std::string bytes =
            QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
        paths.push_back(base::isUtf8(bytes) ? chosenPath(url.toLocalFile()) : bytes);
    }
    return paths;
}

}  // namespace corvalence::gui
