#include "schedule/checking_engine.h"

namespace corvalence::schedule {

bool CheckingEngine::start() {
    const auto settings = ScheduleSettings::read(configuration_);
    if (!settings.startsTimer()) return false;
    const bool isContinuous = settings.reaction == CheckReaction::Continuous;
    return arm(isContinuous ? Timer::ContinuousTick : Timer::StandardTick, settings);
}

bool CheckingEngine::startBackground() {
    return arm(Timer::BackgroundTick, ScheduleSettings::read(configuration_));
}

bool CheckingEngine::arm(Timer tick, const ScheduleSettings& settings) {
    const std::chrono::seconds interval = settings.interval.total();
    if (interval.count() == 0) return false;
    bleeps_ = configuration_.number(settings::key::kCountdownSound) == 0;
    tick_ = tick;
    countdown_ = interval;
    timers_.set(tick, interval);
    timers_.set(Timer::Countdown, kCountdownPeriod);
    state_ = State::Counting;
    return true;
}

void CheckingEngine::hold() {
    for (const Timer timer :
         {Timer::StandardTick, Timer::ContinuousTick, Timer::Countdown, Timer::BackgroundTick}) {
        timers_.kill(timer);
    }
    countdown_ = std::chrono::seconds(0);
    state_ = State::Stopped;
}

void CheckingEngine::stopWithoutSummary() {
    hold();
    front_.countdown(countdownText(countdown_));
    hasRun_ = false;
}

void CheckingEngine::stop() {
    const bool showsSummary = hasRun_;
    stopWithoutSummary();
    if (showsSummary) front_.showSummary();
}

void CheckingEngine::timer(Timer timer) {
    switch (timer) {
        case Timer::Countdown:
            step();
            break;
        case Timer::StandardTick:
        case Timer::ContinuousTick:
        case Timer::BackgroundTick:
            if (state_ == State::Counting) front_.visitSchedule(timer);
            break;
        default:
            break;
    }
}

void CheckingEngine::step() {
    if (countdown_.count() <= 0) return;
    --countdown_;
    front_.countdown(countdownText(countdown_));
    if (bleeps_) sound_.playResource("blp");
}

void CheckingEngine::begins(const std::string&, WorkKind) {
    hasRun_ = true;
    timers_.kill(tick_);
    timers_.kill(Timer::Countdown);
    countdown_ = std::chrono::seconds(0);
    state_ = State::Checking;
}

void CheckingEngine::ends(WorkResult) {
    if (state_ != State::Checking) return;  // stopped in the meantime
    state_ = State::Stopped;
    tick_ == Timer::BackgroundTick ? startBackground() : start();
}

}  // namespace corvalence::schedule
