#pragma once

#include "components/component_check.h"
#include "gui/workspace.h"
#include "store/database_creation.h"

namespace corvalence::gui {

/// Creating, opening, closing and deleting databases, and the list of recent ones.
class DatabaseCommands {
  public:
    /// Takes over its commands of the window; the workspace is to outlive it.
    explicit DatabaseCommands(Workspace& workspace);

    /// Has the user choose a database of the mode, and opens it; where the mode's databases show no list, it
    /// was chosen to be checked.
    void open();
    /// Opens one by its path, with its integrity proved. False where it was refused, which was told.
    bool openPath(const std::string& path);
    /// Checks the database that has just been opened; whoever checks sets this.
    std::function<void()> checkOpened = [] {};

  private:
    void create();
    bool make(const store::CreationRequest& request);
    bool makeComponent(const store::CreationRequest& request);
    bool makeSystem(const store::CreationRequest& request);
    void noteRecent(const std::string& path);
    void details();
    void remove();
    void fillRecent();

    Workspace& work_;
    std::optional<store::OpenDatabaseContext> made_;
};

}  // namespace corvalence::gui
