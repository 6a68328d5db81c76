#pragma once

#include <functional>
#include <optional>

#include "components/component_check.h"
#include "components/machine.h"
#include "core/start.h"
#include "gui/frame.h"
#include "gui/support/help.h"
#include "shell/report_session.h"
#include "store/open_database.h"

namespace corvalence::gui {

class FileListView;

/// What the commands work on together: the run, the window, the open database and the report in view. One
/// piece of work at a time goes on in it; what it throws is told to the user.
class Workspace {
  public:
    Workspace(platform::Platform& platform, const components::Machine& machine, core::Run& run, Frame& frame,
              OpenHelp openHelp);

    platform::Platform& platform() noexcept { return platform_; }
    const components::Machine& machine() const noexcept { return machine_; }
    core::Run& run() noexcept { return run_; }
    store::Vault& vault() noexcept { return run_.vault(); }
    settings::Configuration& configuration() noexcept { return run_.configuration(); }
    Frame& frame() noexcept { return frame_; }
    const OpenHelp& openHelp() const noexcept { return openHelp_; }

    const shell::FrameState& state() const noexcept { return state_; }
    shell::ReportSession& reports() noexcept { return reports_; }

    /// A tick of scheduled checking will come, or not any more.
    void setScheduleRunning(bool isRunning);
    void setMode(shell::Mode mode);

    // The open database.

    std::optional<store::OpenDatabaseContext>& database() noexcept { return database_; }
    /// A database with its integrity proved, recovered from its backup where the user wants it; nothing,
    /// after the user was told, where it was refused.
    std::optional<store::OpenDatabaseContext> openProved(const std::string& path);
    /// Shows a database that has just been opened or made, in its mode.
    void showDatabase(store::OpenDatabaseContext database);
    /// Lists its files anew, after a command has changed them.
    void reloadFiles();
    /// Files and folders were dropped onto the list.
    std::function<void(const std::vector<std::string>& paths)> onDrop;
    /// Gives a list the grid lines and colours that the user has chosen.
    void dress(class ListTable& list) const;
    /// Null unless it lists files.
    FileListView* fileList() noexcept { return fileList_; }
    /// Leaves the report in view, and the database with it.
    void close();

    // The reports of a check, or a saved one, once `reports()` shows it.

    void showReport();
    /// There is none; `caption` for the Page bar.
    void showNoReport(const std::string& caption);
    void leaveReport();

    // Pages of what is in view: of the listed files, or of a report.

    void goToPage(std::size_t page);
    void nextPage();
    void previousPage();

    /// Runs a piece of work unless another is under way: no command can be given meanwhile.
    void perform(const std::function<void()>& work);
    bool isBusy() const noexcept { return isBusy_; }
    /// Called each time work has ended.
    std::function<void()> onIdle = [] {};

    /// The program ends once nothing goes on: work that asks for it is cancelled. `closeProgram` is called
    /// then.
    void requestEnd();
    bool isEnding() const noexcept { return isEnding_; }
    std::function<void()> closeProgram = [] {};

    /// What work could not record or compare, beside its results; nothing where there is no fault among it.
    void tellRemarks(const std::string& heading, const std::vector<components::Remark>& remarks);

    /// Works out what can be done and what the bars say, and shows it.
    void refresh();

  private:
    /// False where it failed; the user is told.
    bool tellFailure(const std::function<void()>& work);
    void leaveDatabase();
    void listFiles();
    void readClipboard();
    void refreshBars();

    platform::Platform& platform_;
    const components::Machine& machine_;
    core::Run& run_;
    Frame& frame_;
    OpenHelp openHelp_;
    shell::FrameState state_;
    shell::ReportSession reports_;
    std::optional<store::OpenDatabaseContext> database_;
    FileListView* fileList_ = nullptr;    // belongs to the window
    class ReportView* report_ = nullptr;  // likewise
    std::string pageCaption_;             // while there are no pages
    bool isBusy_ = false;
    bool isEnding_ = false;
};

}  // namespace corvalence::gui
