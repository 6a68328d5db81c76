#include "gui/support/guarded_application.h"

#include <QMessageBox>
#include <exception>

#include "gui/support/qt_user_interface.h"
#include "gui/support/text.h"

namespace corvalence::gui {

bool GuardedApplication::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& failure) {
        QMessageBox::critical(frontWindow(), QStringLiteral("Corvalence"), shownLines(failure.what()));
        return false;
    }
}

}  // namespace corvalence::gui
