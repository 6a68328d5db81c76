#include "gui/support/icons.h"

#include <QFile>

namespace corvalence::gui {

QIcon icon(const QString& name) {
    const QString path = QStringLiteral(":/icons/") + name + QStringLiteral(".svg");
    return QFile::exists(path) ? QIcon(path) : QIcon();
}

}  // namespace corvalence::gui
