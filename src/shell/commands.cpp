#include "shell/commands.h"

#include <algorithm>
#include <array>

namespace corvalence::shell {

namespace {

using State = const FrameState&;

bool always(State) noexcept {
    return true;
}
bool withoutReport(State state) noexcept {
    return state.view != View::Report;
}
bool inList(State state) noexcept {
    return state.view == View::FileList;
}
bool withRows(State state) noexcept {
    return inList(state) && state.rows > 0;
}
bool withSelection(State state) noexcept {
    return inList(state) && state.selectedRows > 0;
}
bool withPaste(State state) noexcept {
    return inList(state) && state.hasFilesToPaste;
}
bool withDatabase(State state) noexcept {
    return state.isDatabaseOpen && withoutReport(state);
}
/// Something that can be left: a database, or a report.
bool withSomethingOpen(State state) noexcept {
    return state.isDatabaseOpen || state.view == View::Report;
}
/// Where a mode's databases show no list, one is asked for.
bool checkable(State state) noexcept {
    return withoutReport(state) && (state.isDatabaseOpen || state.mode != Mode::FileContents);
}
bool inEmptyView(State state) noexcept {
    return state.view == View::Empty;
}
bool stopped(State state) noexcept {
    return !state.isScheduleRunning && withoutReport(state);
}
bool running(State state) noexcept {
    return state.isScheduleRunning;
}
bool withList(State state) noexcept {
    return state.view != View::Empty && state.rows > 0;
}
bool withCurrentReport(State state) noexcept {
    return state.view == View::Report && state.isCurrentReport;
}
bool withPrevious(State state) noexcept {
    return state.view == View::Report && state.hasPreviousReport;
}
bool withNext(State state) noexcept {
    return state.view == View::Report && state.hasNextReport;
}
bool withoutFileList(State state) noexcept {
    return state.view != View::FileList;
}

constexpr auto kPlain = CommandForm::Plain;
constexpr auto kToggle = CommandForm::Toggle;
constexpr auto kMain = ToolBar::Main;
constexpr auto kAdd = ToolBar::AddFiles;
constexpr auto kRemove = ToolBar::RemoveFiles;
constexpr auto kNone = ToolBar::None;

// Columns: command, menu, text, picture, keys, tool bar, form, whether a line follows, when it can be run.
constexpr std::array<CommandRow, 68> kCommands = {{
    {Command::CreateDatabase, Menu::Database, "Create a Database", "create", "Ctrl+N", kMain, kPlain, false,
     withoutReport},
    {Command::OpenDatabase, Menu::Database, "Open an existing Database", "open", "Ctrl+O", kMain, kPlain,
     false, withoutReport},
    {Command::CloseDatabase, Menu::Database, "Close the open Database", "close", "Ctrl+W", kMain, kPlain,
     true, withSomethingOpen},
    {Command::CheckDatabase, Menu::Database, "Check All Files In The Open Database", "check", "F5", kMain,
     kPlain, false, checkable},
    {Command::DatabaseDetails, Menu::Database, "Details", "details", "", kMain, kPlain, false, inList},
    {Command::DeleteDatabase, Menu::Database, "Delete", "delete", "", kNone, kPlain, true, withDatabase},
    {Command::Print, Menu::Database, "Print", "print", "Ctrl+P", kMain, kPlain, true, withList},
    {Command::Exit, Menu::Database, "Exit", "", "Ctrl+Q", kNone, kPlain, false, always},

    {Command::AddSpecificFile, Menu::AddFiles, "Specific File", "add-file", "Ctrl+Ins", kAdd, kPlain, false,
     inList},
    {Command::AddAllFiles, Menu::AddFiles, "All Files", "add-all", "", kAdd, kPlain, true, inList},
    {Command::AddBySize, Menu::AddFiles, "According to Size", "add-size", "", kAdd, kPlain, false, inList},
    {Command::AddByType, Menu::AddFiles, "According toType", "add-type", "", kAdd, kPlain, false, inList},
    {Command::AddByLocation, Menu::AddFiles, "According to Location", "add-location", "Ctrl+L", kAdd, kPlain,
     false, inList},
    {Command::AddByTime, Menu::AddFiles, "According toTime", "add-time", "", kAdd, kPlain, false, inList},
    {Command::AddByAttributes, Menu::AddFiles, "According to Attributes", "add-attributes", "", kAdd, kPlain,
     false, inList},
    {Command::AddByContents, Menu::AddFiles, "According to Contents", "add-contents", "", kAdd, kPlain, false,
     inList},
    {Command::AddByAbilities, Menu::AddFiles, "According to Abilities / Functionality", "add-abilities", "",
     kAdd, kPlain, false, inList},
    {Command::AddByCombination, Menu::AddFiles, "Combination ", "add-combination", "", kAdd, kPlain, true,
     inList},
    {Command::PasteFiles, Menu::AddFiles, "Paste Files into the Database", "paste", "Ctrl+V", kAdd, kPlain,
     false, withPaste},

    {Command::RemoveSelected, Menu::RemoveFiles, "Selected Files", "remove-selected", "Del", kRemove, kPlain,
     false, withSelection},
    {Command::RemoveAllFiles, Menu::RemoveFiles, "All Files", "remove-all", "", kRemove, kPlain, true,
     withRows},
    {Command::RemoveBySize, Menu::RemoveFiles, "According to Size", "remove-size", "", kRemove, kPlain, false,
     withRows},
    {Command::RemoveByType, Menu::RemoveFiles, "According toType", "remove-type", "", kRemove, kPlain, false,
     withRows},
    {Command::RemoveByLocation, Menu::RemoveFiles, "According to Location", "remove-location", "", kRemove,
     kPlain, false, withRows},
    {Command::RemoveByTime, Menu::RemoveFiles, "According toTime", "remove-time", "", kRemove, kPlain, false,
     withRows},
    {Command::RemoveByAttributes, Menu::RemoveFiles, "According to Attributes", "remove-attributes", "",
     kRemove, kPlain, false, withRows},
    {Command::RemoveByContents, Menu::RemoveFiles, "According to Contents", "remove-contents", "", kRemove,
     kPlain, false, withRows},
    {Command::RemoveByAbilities, Menu::RemoveFiles, "According to Abilities / Functionality",
     "remove-abilities", "", kRemove, kPlain, false, withRows},
    {Command::RemoveByCombination, Menu::RemoveFiles, "Combination ", "remove-combination", "", kRemove,
     kPlain, false, withRows},

    {Command::FileContentsMode, Menu::Mode, "File Contents Mode.", "mode-file-contents", "Ctrl+1", kMain,
     CommandForm::Mode, false, inEmptyView},
    {Command::DirectoryStructureMode, Menu::Mode, "Directory Structure Mode.", "mode-directory-structure",
     "Ctrl+2", kMain, CommandForm::Mode, false, inEmptyView},
    {Command::PermissionsMode, Menu::Mode, "Permissions Mode.", "mode-permissions", "Ctrl+3", kMain,
     CommandForm::Mode, false, inEmptyView},
    {Command::RegistryMode, Menu::Mode, "Registry Mode.", "mode-registry", "Ctrl+4", kMain, CommandForm::Mode,
     false, inEmptyView},
    {Command::ServicesMode, Menu::Mode, "Services Mode.", "mode-services", "Ctrl+5", kMain, CommandForm::Mode,
     false, inEmptyView},
    {Command::CompleteSystemMode, Menu::Mode, "Complete System Mode.", "mode-complete-system", "Ctrl+6",
     kMain, CommandForm::Mode, false, inEmptyView},

    {Command::ScheduleChecks, Menu::Schedule, "Schedule checks", "schedule", "", kNone, kPlain, false,
     withDatabase},
    {Command::CheckingSchedule, Menu::Schedule, "Checking Schedule", "schedule-list", "", kMain, kPlain, true,
     withoutReport},
    {Command::StartChecking, Menu::Schedule, "Start Scheduled Checking", "start", "", kMain, kPlain, false,
     stopped},
    {Command::StopChecking, Menu::Schedule, "Stop Scheduled Checking", "stop", "", kMain, kPlain, false,
     running},
    {Command::StartBackground, Menu::Schedule, "Start Scheduled Checking [ Background Mode ]", "background",
     "", kMain, kPlain, false, withoutReport},

    {Command::ViewLogFile, Menu::Log, "View Log File", "log-view", "", kMain, kPlain, false, always},
    {Command::ViewSessionLog, Menu::Log, "View Session Log ", "log-session", "", kNone, kPlain, false,
     always},
    {Command::ImportLogFile, Menu::Log, "Import Log File", "log-import", "", kNone, kPlain, false, always},

    {Command::SaveReport, Menu::Report, "Save", "report-save", "Ctrl+S", kMain, kPlain, false,
     withCurrentReport},
    {Command::ViewSavedReport, Menu::Report, "View Saved Report", "report-open", "", kMain, kPlain, true,
     withoutFileList},
    {Command::PreviousReport, Menu::Report, "View Previous Report", "report-previous", "Alt+Left", kMain,
     kPlain, false, withPrevious},
    {Command::NextReport, Menu::Report, "View Next Report", "report-next", "Alt+Right", kMain, kPlain, false,
     withNext},

    {Command::MainToolBar, Menu::View, "&Toolbar", "", "", kNone, kToggle, false, always},
    {Command::AddToolBar, Menu::View, "Add Files Toolbar", "", "", kNone, kToggle, false, always},
    {Command::RemoveToolBar, Menu::View, "Remove Files Toolbar", "", "", kNone, kToggle, true, always},
    {Command::LargeButtons, Menu::View, "Large Toolbar Buttons", "", "", kNone, CommandForm::Size, false,
     always},
    {Command::SmallButtons, Menu::View, "Small Toolbar Buttons", "", "", kNone, CommandForm::Size, true,
     always},
    {Command::CountdownBar, Menu::View, "Countdown Bar", "", "", kNone, kToggle, false, always},
    {Command::MemoryBar, Menu::View, "Memory Bar ", "", "", kNone, kToggle, false, always},
    {Command::DiskSpaceBar, Menu::View, "Disk Space Bar", "", "", kNone, kToggle, false, always},
    {Command::DatabaseContentsBar, Menu::View, "Database Contents Bar", "", "", kNone, kToggle, false,
     always},
    {Command::DatabaseSizeBar, Menu::View, "Database Size Bar", "", "", kNone, kToggle, false, always},
    {Command::PageBar, Menu::View, "Page Bar", "", "", kNone, kToggle, true, always},
    {Command::InvertColours, Menu::View, "Invert Colour Scheme", "invert", "", kNone, kToggle, false, always},
    {Command::GridLines, Menu::View, "Grid Lines", "grid", "", kNone, kToggle, false, always},

    {Command::AdjustConfiguration, Menu::Configuration, "Adjust Corvalence Configuration", "configuration",
     "", kMain, kPlain, false, always},
    {Command::ChangePassword, Menu::Configuration, "Change Password", "password", "", kNone, kPlain, true,
     withoutReport},
    {Command::FolderPermissions, Menu::Configuration, "Corvalence Folder Permissions", "folder-permissions",
     "", kNone, kPlain, false, always},
    {Command::CheckFolderPermissions, Menu::Configuration, "Check Corvalence Folder Permissions",
     "folder-permissions-check", "", kNone, kPlain, false, always},
    {Command::CheckProgram, Menu::Configuration, "Check Corvalence Files", "", "", kNone, kPlain, false,
     always},

    {Command::Help, Menu::Help, "Corvalence Help", "help", "F1", kMain, kPlain, false, always},
    {Command::Website, Menu::Help, "Website", "", "", kNone, kPlain, true, always},
    {Command::About, Menu::Help, "About Corvalence", "about", "", kNone, kPlain, false, always},
}};

constexpr bool isInOrder() {
    for (std::size_t at = 0; at < kCommands.size(); ++at) {
        if (static_cast<std::size_t>(kCommands[at].command) != at) return false;
    }
    return true;
}
static_assert(isInOrder(), "a command's row is found by its number");

constexpr std::array<std::string_view, 10> kMenus = {"&Database",      "&Add Files", "&Remove Files", "&Mode",
                                                     "&Schedule",      "&Log",       "Re&port",       "&View",
                                                     "&Configuration", "&Help"};

}  // namespace

std::span<const CommandRow> commandRows() noexcept {
    return kCommands;
}

const CommandRow& commandRow(Command command) noexcept {
    return kCommands[static_cast<std::size_t>(command)];
}

bool mayRun(Command command, const FrameState& state) noexcept {
    return commandRow(command).mayRun(state);
}

std::string_view commandText(Command command, Mode mode) noexcept {
    const bool isOther = command == Command::CheckDatabase && mode != Mode::FileContents;
    return isOther ? "Check The Open Database" : commandRow(command).text;
}

std::string_view menuText(Menu menu) noexcept {
    return kMenus[static_cast<std::size_t>(menu)];
}

bool isShown(Menu menu, Mode mode) noexcept {
    const bool isAboutFiles = menu == Menu::AddFiles || menu == Menu::RemoveFiles;
    return !isAboutFiles || mode == Mode::FileContents;
}

Command commandOf(Mode mode) noexcept {
    constexpr std::array<Command, 6> kModeCommands = {
        Command::FileContentsMode, Command::DirectoryStructureMode, Command::PermissionsMode,
        Command::RegistryMode,     Command::CompleteSystemMode,     Command::ServicesMode};
    return kModeCommands[static_cast<std::size_t>(mode)];
}

}  // namespace corvalence::shell
