#include "schedule/timer_queue.h"

#include <algorithm>

namespace corvalence::schedule {

void TimerQueue::set(Timer timer, std::chrono::milliseconds period) {
    entries_[timer] = {period, clock_.elapsed() + period};
}

void TimerQueue::kill(Timer timer) {
    entries_.erase(timer);
}

std::map<Timer, TimerQueue::Entry>::const_iterator TimerQueue::next() const {
    return std::min_element(entries_.begin(), entries_.end(),
                            [](const auto& a, const auto& b) { return a.second.at < b.second.at; });
}

std::optional<Timer> TimerQueue::due() {
    const auto earliest = next();
    if (earliest == entries_.end() || earliest->second.at > clock_.elapsed()) return std::nullopt;
    const Timer timer = earliest->first;
    set(timer, earliest->second.period);
    return timer;
}

std::optional<std::chrono::milliseconds> TimerQueue::wait() const {
    const auto earliest = next();
    if (earliest == entries_.end()) return std::nullopt;
    return std::max(earliest->second.at - clock_.elapsed(), std::chrono::milliseconds(0));
}

}  // namespace corvalence::schedule
