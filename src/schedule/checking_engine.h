#pragma once

#include <string>

#include "platform/sound.h"
#include "schedule/schedule_settings.h"
#include "schedule/timers.h"
#include "schedule/work_listener.h"

namespace corvalence::schedule {

/// What the engine needs of the program around it.
class EngineFront {
  public:
    virtual ~EngineFront() = default;

    /// The time that is left until the next checks: "00:00:07".
    virtual void countdown(const std::string& text) = 0;
    /// Visits the databases of the schedule; `tick` says by which timer.
    virtual void visitSchedule(Timer tick) = 0;
    /// A session in which something was checked is over.
    virtual void showSummary() = 0;
};

/// Unattended checking as a cycle: a countdown, a tick that has the schedule visited, and again. Works by
/// timers and the settings at the moment of each step; who checks tells it as a WorkListener, for each
/// database, so that no tick comes while one is checked and the countdown begins anew behind it.
class CheckingEngine : public WorkListener {
  public:
    CheckingEngine(Timers& timers, const settings::Configuration& configuration, platform::Sound& sound,
                   EngineFront& front)
        : timers_(timers), configuration_(configuration), sound_(sound), front_(front) {}

    /// Starts the cycle in the way that the settings say. False, and nothing runs, where the interval is 0 or
    /// no way is set.
    bool start();
    /// Starts it in background mode, whatever the way. False where the interval is 0.
    bool startBackground();
    /// Ends the cycle, with the summary where something was checked since it was started.
    void stop();
    void stopWithoutSummary();
    /// No tick comes and nothing counts down until something is started.
    void hold();

    /// For each of the three ticks and the countdown; others are nothing to the engine.
    void timer(Timer timer);

    /// Whether a tick will come, if only behind the check that is under way.
    bool isArmed() const noexcept { return state_ != State::Stopped; }

    void begins(const std::string& database, WorkKind kind) override;
    void firstDifference() override {}
    void progress(std::uint32_t) override {}
    void needsRestart() override { state_ = State::Stopped; }
    void ends(WorkResult result) override;

  private:
    enum class State { Stopped, Counting, Checking };

    bool arm(Timer tick, const ScheduleSettings& settings);
    void step();

    Timers& timers_;
    const settings::Configuration& configuration_;
    platform::Sound& sound_;
    EngineFront& front_;
    Timer tick_ = Timer::ContinuousTick;  // in force
    State state_ = State::Stopped;
    bool hasRun_ = false;
    bool bleeps_ = false;
    std::chrono::seconds countdown_{0};
};

}  // namespace corvalence::schedule
