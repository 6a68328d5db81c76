#pragma once

#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <set>

#include "schedule/timers.h"

namespace corvalence::gui {

/// The timers of unattended checking on the window's event loop. Events are handled in the middle of work as
/// well: a tick that comes then waits until the work is done, and an animation or a countdown goes on.
class QtTimers : public schedule::Timers {
  public:
    /// `mayTick`: whether a check may begin now. `fire` is called for each timer that is due.
    QtTimers(std::function<bool()> mayTick, std::function<void(schedule::Timer)> fire)
        : mayTick_(std::move(mayTick)), fire_(std::move(fire)) {}

    void set(schedule::Timer timer, std::chrono::milliseconds period) override;
    void kill(schedule::Timer timer) override;

    /// Fires a tick that had to wait. To be called each time work ends.
    void release();

  private:
    void due(schedule::Timer timer);

    std::function<bool()> mayTick_;
    std::function<void(schedule::Timer)> fire_;
    std::map<schedule::Timer, std::unique_ptr<QTimer>> timers_;
    std::set<schedule::Timer> waiting_;
};

}  // namespace corvalence::gui
