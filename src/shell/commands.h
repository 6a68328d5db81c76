#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "shell/modes.h"

namespace corvalence::shell {

/// Everything that a user can do from the menus of the main window.
enum class Command {
    CreateDatabase,
    OpenDatabase,
    CloseDatabase,
    CheckDatabase,
    DatabaseDetails,
    DeleteDatabase,
    Print,
    Exit,
    AddSpecificFile,
    AddAllFiles,
    AddBySize,
    AddByType,
    AddByLocation,
    AddByTime,
    AddByAttributes,
    AddByContents,
    AddByAbilities,
    AddByCombination,
    PasteFiles,
    RemoveSelected,
    RemoveAllFiles,
    RemoveBySize,
    RemoveByType,
    RemoveByLocation,
    RemoveByTime,
    RemoveByAttributes,
    RemoveByContents,
    RemoveByAbilities,
    RemoveByCombination,
    FileContentsMode,
    DirectoryStructureMode,
    PermissionsMode,
    RegistryMode,
    ServicesMode,
    CompleteSystemMode,
    ScheduleChecks,
    CheckingSchedule,
    StartChecking,
    StopChecking,
    StartBackground,
    ViewLogFile,
    ViewSessionLog,
    ImportLogFile,
    SaveReport,
    ViewSavedReport,
    PreviousReport,
    NextReport,
    MainToolBar,
    AddToolBar,
    RemoveToolBar,
    LargeButtons,
    SmallButtons,
    CountdownBar,
    MemoryBar,
    DiskSpaceBar,
    DatabaseContentsBar,
    DatabaseSizeBar,
    PageBar,
    InvertColours,
    GridLines,
    AdjustConfiguration,
    ChangePassword,
    FolderPermissions,
    CheckFolderPermissions,
    CheckProgram,
    Help,
    Website,
    About
};

/// The menus of the window, from left to right.
enum class Menu { Database, AddFiles, RemoveFiles, Mode, Schedule, Log, Report, View, Configuration, Help };

enum class ToolBar { None, Main, AddFiles, RemoveFiles };

/// What fills the middle of the window.
enum class View {
    Empty,     // no list: no database is open, or one that lists no files
    FileList,  // the files of an open File Contents database
    Report
};

/// What decides which commands can be run.
struct FrameState {
    Mode mode = Mode::FileContents;
    View view = View::Empty;
    bool isDatabaseOpen = false;
    std::size_t rows = 0;
    std::size_t selectedRows = 0;
    bool hasFilesToPaste = false;
    /// A tick of scheduled checking will come.
    bool isScheduleRunning = false;
    /// The report in view is that of the last check; otherwise it was saved some time.
    bool isCurrentReport = false;
    bool hasPreviousReport = false;
    bool hasNextReport = false;
};

/// How a menu shows a command.
enum class CommandForm {
    Plain,
    Toggle,  // on or off by itself
    Mode,    // one of the six is on
    Size     // one of the two sizes of buttons is on
};

struct CommandRow {
    Command command;
    Menu menu;
    std::string_view text;
    std::string_view icon;      // name of the picture; empty for none
    std::string_view shortcut;  // portable text of the keys
    ToolBar toolBar;
    CommandForm form;
    bool endsGroup;  // a line follows it in the menu
    bool (*mayRun)(const FrameState& state);
};

/// In the order in which the menus show them. The one table that menus, tool bars and handlers go by.
std::span<const CommandRow> commandRows() noexcept;
const CommandRow& commandRow(Command command) noexcept;

/// Whether the command would do what it says.
bool mayRun(Command command, const FrameState& state) noexcept;

/// The command's text in a mode: a check is not of files in all of them.
std::string_view commandText(Command command, Mode mode) noexcept;

/// Text of a menu. Those about files are there in File Contents mode alone.
std::string_view menuText(Menu menu) noexcept;
bool isShown(Menu menu, Mode mode) noexcept;

/// The command that switches to a mode.
Command commandOf(Mode mode) noexcept;

}  // namespace corvalence::shell
