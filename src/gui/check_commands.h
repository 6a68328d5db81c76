#pragma once

#include "gui/workspace.h"

namespace corvalence::gui {

/// The check of the open database in its mode, and the reports that checks leave.
class CheckCommands {
  public:
    /// Takes over its commands of the window; the workspace is to outlive it.
    explicit CheckCommands(Workspace& workspace);

    /// Opens a database of files with its integrity proved and checks it with its prompts; the window shows
    /// what it showed before.
    void checkWithPrompts(const std::string& database);

    /// Checks the open database, whose integrity has just been proved, in the way of its mode.
    void checkProved();
    /// Has the user choose a database to be checked; whoever opens them sets this.
    std::function<void()> openDatabase = [] {};

  private:
    void check();
    void checkFiles(store::OpenDatabaseContext& database);
    void checkComponent(const store::OpenDatabaseContext& database);
    void checkSystem(const store::OpenDatabaseContext& database);
    void saveReport();
    void viewSavedReport();

    Workspace& work_;
};

}  // namespace corvalence::gui
