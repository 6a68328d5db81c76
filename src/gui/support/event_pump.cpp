#include "gui/support/event_pump.h"

#include <QCoreApplication>

namespace corvalence::gui {

bool EventPump::isDue() const {
    return !sinceLast_.isValid() || sinceLast_.elapsed() >= kInterval;
}

void EventPump::pump(bool takesInput) {
    if (!isDue()) return;
    QCoreApplication::processEvents(takesInput ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
    sinceLast_.start();
}

}  // namespace corvalence::gui
