#include "shell/commands.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "shell/info_bars.h"

namespace corvalence::shell {
namespace {

TEST(Commands, CanBeRunExactlyWhereTheyDoSomething) {
    using enum Command;
    FrameState state;
    const auto runs = [&](Command command) { return mayRun(command, state); };
    EXPECT_TRUE(runs(CreateDatabase) && runs(OpenDatabase) && runs(RegistryMode) && runs(StartChecking));
    EXPECT_FALSE(runs(CheckDatabase) || runs(CloseDatabase) || runs(AddByLocation) || runs(RemoveAllFiles) ||
                 runs(Print) || runs(SaveReport) || runs(NextReport) || runs(StopChecking) ||
                 runs(ScheduleChecks));

    state.mode = Mode::Services;
    EXPECT_TRUE(runs(CheckDatabase)) << "asks for a database first";

    state = {.view = View::FileList, .isDatabaseOpen = true};
    EXPECT_TRUE(runs(CheckDatabase) && runs(AddByLocation) && runs(DatabaseDetails) && runs(DeleteDatabase));
    EXPECT_TRUE(runs(StartChecking)) << "says that the database has to be closed first";
    EXPECT_FALSE(runs(RegistryMode)) << "an open list belongs to its mode";
    EXPECT_FALSE(runs(RemoveAllFiles) || runs(RemoveSelected) || runs(PasteFiles) || runs(Print));
    state.rows = 2;
    state.selectedRows = 1;
    state.hasFilesToPaste = true;
    EXPECT_TRUE(runs(RemoveAllFiles) && runs(RemoveSelected) && runs(PasteFiles) && runs(Print));

    state = {.view = View::Report, .isDatabaseOpen = true, .isCurrentReport = true, .hasNextReport = true};
    EXPECT_TRUE(runs(SaveReport) && runs(NextReport) && runs(CloseDatabase) && runs(ViewSavedReport));
    EXPECT_FALSE(runs(PreviousReport) || runs(CheckDatabase) || runs(CreateDatabase) || runs(AddByLocation));
    state.isCurrentReport = false;
    EXPECT_FALSE(runs(SaveReport)) << "it is a saved one";

    state.isScheduleRunning = true;
    EXPECT_TRUE(runs(StopChecking)) << "whatever is in view";
    EXPECT_FALSE(runs(StartChecking));
}

TEST(Commands, ShareNoKeysAndNoTextWithinAMenu) {
    std::set<std::string_view> keys;
    std::map<Menu, std::set<std::string_view>> texts;
    for (const CommandRow& row : commandRows()) {
        EXPECT_TRUE(row.shortcut.empty() || keys.insert(row.shortcut).second) << row.shortcut;
        EXPECT_TRUE(texts[row.menu].insert(row.text).second) << row.text;
    }
    for (const ModeRow& row : modeRows())
        EXPECT_EQ(commandRow(commandOf(row.mode)).form, CommandForm::Mode);
}

TEST(InfoBars, ShowWhatIsLeftInWholePercentAndTheFittingUnit) {
    EXPECT_EQ(memoryBar(platform::Capacity{50, 199}), (InfoBarContent{"Memory available: 50%", 50}))
        << "by hundredths of the total, cut";
    EXPECT_EQ(memoryBar(std::nullopt), (InfoBarContent{"Memory available: ", std::nullopt}));
    const auto disk = [](std::uint64_t free, std::uint64_t total) {
        return diskSpaceBar(platform::Capacity{free, total});
    };
    EXPECT_EQ(disk(1023, 2046), (InfoBarContent{"Disk space available: 1023.00", 50}));
    EXPECT_EQ(disk(1024, 4096), (InfoBarContent{"Disk space available: 1.00 KB", 25}));
    EXPECT_EQ(disk(1536 * 1024, 4 * 1024 * 1024), (InfoBarContent{"Disk space available: 1.50 MB", 50}));
    EXPECT_EQ(disk(std::uint64_t{5} << 40, std::uint64_t{5} << 40),
              (InfoBarContent{"Disk space available: 5120.00 GB", 100}));
    EXPECT_EQ(disk(0, 4096), (InfoBarContent{"Disk space available: 0.00", 0}));
    EXPECT_EQ(countdownBar("00:00:07").text, "Next check: 00:00:07");
}

}  // namespace
}  // namespace corvalence::shell
