#pragma once

#include <QElapsedTimer>

namespace corvalence::gui {

/// Lets a window live while work goes on in the same thread: events are handled, but no more often than a
/// person notices, so that asking costs next to nothing.
class EventPump {
  public:
    /// Milliseconds between two rounds of events.
    static constexpr qint64 kInterval = 20;

    /// Whether the last time is long enough ago.
    bool isDue() const;
    /// Handles what is waiting, if that is due. `takesInput`: keys and the mouse as well;
    /// without, they wait.
    void pump(bool takesInput = true);

  private:
    QElapsedTimer sinceLast_;
};

}  // namespace corvalence::gui
