#pragma once

#include "gui/program_files.h"
#include "gui/workspace.h"
#include "platform/auto_start.h"

namespace corvalence::gui {

/// Configuration, password, logs, and how the program guards itself.
class ToolCommands {
  public:
    /// Takes over its commands of the window; the workspace is to outlive it.
    ToolCommands(Workspace& workspace, ProgramFiles program, platform::AutoStart& autoStart);

    /// Ends scheduled checking without a summary; whoever runs it sets this.
    std::function<void()> stopChecking = [] {};
    /// Settings may be others than before.
    std::function<void()> onConfigured = [] {};
    /// Opens a database again that had to be closed; whoever opens them sets this.
    std::function<void(const std::string& path)> reopen = [](const std::string&) {};

    /// Files and folder of the program, as at each start: only what is wrong is told.
    void checkAtStart();
    /// "Scheduled Checking Summary."
    void showSummary();

  private:
    enum class Telling { Faults, Everything };

    void configure();
    void changePassword();
    void viewLog();
    void importLog();
    bool isInverted();
    void showPermissions();
    void checkPermissions(Telling telling);
    void checkFiles(Telling telling);
    void warn(const core::SelfCheckWarning& warning, const char* topic);
    void openWebsite();
    void about();

    Workspace& work_;
    ProgramFiles program_;
    platform::AutoStart& autoStart_;
};

}  // namespace corvalence::gui
