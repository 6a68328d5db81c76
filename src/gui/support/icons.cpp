#include "gui/support/icons.h"

#include <QFile>

// Outside of any namespace: the linker leaves a library's resources out unless something names them.
static void registerArtwork() {
    Q_INIT_RESOURCE(artwork);
}

namespace corvalence::gui {

QIcon icon(const QString& name) {
    [[maybe_unused]] static const bool isRegistered = (registerArtwork(), true);
    const QString path = QStringLiteral(":/icons/") + name + QStringLiteral(".svg");
    return QFile::exists(path) ? QIcon(path) : QIcon();
}

}  // namespace corvalence::gui
