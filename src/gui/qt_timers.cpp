#include "gui/qt_timers.h"

namespace corvalence::gui {

namespace {

using schedule::Timer;

bool isTick(Timer timer) {
    return timer == Timer::StandardTick || timer == Timer::ContinuousTick || timer == Timer::BackgroundTick;
}

}  // namespace

void QtTimers::set(Timer timer, std::chrono::milliseconds period) {
    waiting_.erase(timer);
    std::unique_ptr<QTimer>& entry = timers_[timer];
    if (!entry) {
        entry = std::make_unique<QTimer>();
        // A day is longer than a coarse timer may be off by.
        entry->setTimerType(Qt::PreciseTimer);
        QObject::connect(entry.get(), &QTimer::timeout, [this, timer] { due(timer); });
    }
    entry->start(period);
}

void QtTimers::kill(Timer timer) {
    waiting_.erase(timer);
    if (const auto entry = timers_.find(timer); entry != timers_.end()) entry->second->stop();
}

void QtTimers::due(Timer timer) {
    if (isTick(timer) && !mayTick_()) {
        waiting_.insert(timer);
        return;
    }
    fire_(timer);
}

void QtTimers::release() {
    if (waiting_.empty() || !mayTick_()) return;
    const Timer timer = *waiting_.begin();
    waiting_.erase(waiting_.begin());
    fire_(timer);  // behind which the next end of work comes here again
}

}  // namespace corvalence::gui
