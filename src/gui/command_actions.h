#pragma once

#include <QAction>
#include <QObject>
#include <functional>
#include <map>
#include <vector>

#include "shell/commands.h"

namespace corvalence::gui {

/// The actions of the commands, from which menus and tool bars are made: one a command, with the texts,
/// pictures and keys of the table. Each bears the number of its command as "command-<n>" for a name.
class CommandActions : public QObject {
  public:
    using Handler = std::function<void()>;

    explicit CommandActions(QObject* parent);

    QAction* action(shell::Command command) const { return actions_[static_cast<std::size_t>(command)]; }
    /// What a command does. One that shows a state is handed on once the state has changed.
    void handle(shell::Command command, Handler handler) { handlers_[command] = std::move(handler); }
    /// Runs the command's handler through `dispatch`.
    void trigger(shell::Command command);

    /// Enables what can be run, and adapts texts to the mode.
    void update(const shell::FrameState& state);

    /// Runs a handler; whoever owns the work sets it, to keep order and to catch what is thrown.
    std::function<void(const Handler&)> dispatch = [](const Handler& handler) { handler(); };

  private:
    std::vector<QAction*> actions_;
    std::map<shell::Command, Handler> handlers_;
};

}  // namespace corvalence::gui
