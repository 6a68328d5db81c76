#include "gui/schedule_commands.h"

#include <gtest/gtest.h>

#include <QLabel>

#include "desk.h"
#include "driving.h"
#include "gui/views/info_bar.h"
#include "schedule/log_files.h"
#include "schedule/log_view.h"
#include "schedule/schedule_dialog.h"

namespace corvalence::gui {
namespace {

using schedule::TrayCommand;
using shell::Command;
using testing::Contains;
using testing::HasSubstr;

/// Scheduled checking of one database of files, every second, on the window's own event loop.
class ScheduledChecking : public testing::Test {
  protected:
    ScheduledChecking() {
        desk.world.write("a.txt", "one");
        EXPECT_TRUE(desk.world.create());
        desk.world.add({"a.txt"});
        desk.world.set(settings::key::kScheduleSeconds, "1");
        schedule::ScheduleDialog dialog(desk.world.vault());
        EXPECT_EQ(dialog.add(desk.world.databasePath()), schedule::AddToSchedule::Added);
        desk.work.setMode(shell::Mode::FileContents);
        desk.frame.show();
    }

    bool wasLogged() {
        const schedule::LogFiles logs(desk.world.vault());
        const auto log =
            desk.world.platform.files.status(logs.path(schedule::LogKind::Session), platform::Follow::Yes);
        return log && log->size > 0 && !desk.work.isBusy();
    }
    bool sawCaption(const std::string& caption) const {
        return std::find(tray.captions.begin(), tray.captions.end(), caption) != tray.captions.end();
    }

    test::Desk desk;
    test::ShownTray tray;
    bool hasTray = true;
    int summaries = 0;
    std::vector<std::string> prompted;
    ScheduleCommands schedule{
        desk.work,
        {std::make_shared<corvalence::test::ScriptedMail>(), tray, [this] { return hasTray; },
         [this](const std::string& database) { prompted.push_back(database); }, [this] { ++summaries; }}};
};

TEST_F(ScheduledChecking, GoesRoundInTheWindowAndEndsWithTheSummary) {
    EXPECT_FALSE(desk.frame.actions().action(Command::StopChecking)->isEnabled());
    desk.trigger(Command::StartChecking);
    EXPECT_TRUE(desk.frame.actions().action(Command::StopChecking)->isEnabled());
    EXPECT_FALSE(desk.frame.actions().action(Command::StartChecking)->isEnabled());
    ASSERT_TRUE(test::waitFor([&] { return wasLogged(); }));
    desk.trigger(Command::StopChecking);
    EXPECT_EQ(summaries, 1);
    EXPECT_FALSE(desk.frame.actions().action(Command::StopChecking)->isEnabled());
    desk.trigger(Command::StartChecking);
    desk.trigger(Command::StopChecking);
    EXPECT_EQ(summaries, 1) << "nothing was checked in between";
    EXPECT_TRUE(prompted.empty());
}

TEST_F(ScheduledChecking, SaysWhyNothingStartsWithoutAnInterval) {
    desk.world.set(settings::key::kScheduleSeconds, "0");
    auto& messages = desk.world.machine.ui.messages;
    messages.clear();
    desk.trigger(Command::StartChecking);
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_THAT(messages.back().text, HasSubstr("no interval is set"));
    EXPECT_TRUE(desk.frame.actions().action(Command::StartChecking)->isEnabled());
    desk.trigger(Command::StartBackground);
    EXPECT_EQ(messages.size(), 2U);
    schedule.trayCommand(TrayCommand::Open);
}

TEST_F(ScheduledChecking, WaitsWhileFilesAreListedAndSaysSo) {
    desk.trigger(Command::StartChecking);
    ASSERT_EQ(desk.world.open(), store::OpenResult::Opened);
    desk.work.showDatabase(desk.world.context());
    auto& pane = test::find<QLabel>(desk.frame, "workPane");
    ASSERT_TRUE(test::waitFor([&] { return pane.text().contains("once the open database is closed"); }));
    EXPECT_FALSE(wasLogged());

    desk.trigger(Command::StopChecking);
    desk.world.machine.ui.messages.clear();
    desk.trigger(Command::StartChecking);
    desk.trigger(Command::StartBackground);
    EXPECT_TRUE(desk.world.machine.ui.saw(
        "You have to close the open database before starting the scheduled checking."));
    EXPECT_TRUE(desk.world.machine.ui.saw(
        "You have to close the open database before starting background checking."));
}

TEST_F(ScheduledChecking, AsksAboutFilesWithStandardCheckingOnly) {
    desk.world.set(settings::key::kScheduleReaction, "P");
    desk.trigger(Command::StartChecking);
    ASSERT_TRUE(test::waitFor([&] { return !prompted.empty() && !desk.work.isBusy(); }));
    EXPECT_THAT(prompted, Contains(desk.world.databasePath()));
    EXPECT_TRUE(desk.work.state().isScheduleRunning) << "the cycle goes on";
    desk.trigger(Command::StopChecking);
    EXPECT_EQ(summaries, 0) << "the user has been told, and nothing was logged";
}

TEST_F(ScheduledChecking, CountsDownInSilenceWhileFilesAreListed) {
    desk.world.set(settings::key::kCountdownSound, "0");
    desk.world.set(settings::key::kScheduleSeconds, "9");
    desk.trigger(Command::StartChecking);
    auto& sounds = desk.world.machine.sound.resources;
    ASSERT_TRUE(test::waitFor([&] { return !sounds.empty(); }));
    ASSERT_EQ(desk.world.open(), store::OpenResult::Opened);
    desk.work.showDatabase(desk.world.context());
    sounds.clear();
    const auto shows = [](QWidget* widget) {
        const auto* bar = dynamic_cast<InfoBar*>(widget);
        return bar != nullptr && bar->text().startsWith("Next check: ") &&
               bar->text() <= QLatin1String("Next check: 00:00:06");
    };
    const auto bars = desk.frame.findChildren<QWidget*>();
    ASSERT_TRUE(test::waitFor([&] { return std::any_of(bars.begin(), bars.end(), shows); }));
    EXPECT_TRUE(sounds.empty());
}

TEST_F(ScheduledChecking, BehindTheTrayWarnsOfAChangeAndComesBackWithTheSummary) {
    desk.world.write("a.txt", "two");
    desk.trigger(Command::StartBackground);
    EXPECT_FALSE(desk.frame.isVisible());
    EXPECT_TRUE(sawCaption("Corvalence - Counting Down To Next Scheduled Check."));
    ASSERT_TRUE(test::waitFor([&] { return sawCaption("Corvalence - File Change!"); }));
    EXPECT_TRUE(sawCaption("Corvalence - Scheduled Checking In Progress."));
    ASSERT_TRUE(test::waitFor([&] { return !desk.work.isBusy(); }));

    schedule.openTrayMenu();
    EXPECT_EQ(tray.icons.at(schedule::kMainIcon).caption, "Corvalence - Scheduled Checking Paused.")
        << "left without a choice, nothing is checked";
    schedule.trayCommand(TrayCommand::Stop);
    EXPECT_EQ(tray.icons.at(schedule::kMainIcon).caption, "Corvalence - Scheduled Checking Paused.");
    EXPECT_EQ(summaries, 1);
    EXPECT_FALSE(desk.frame.isVisible());
    schedule.trayOpen();
    EXPECT_TRUE(desk.frame.isVisible());
    EXPECT_TRUE(tray.icons.empty());
    EXPECT_FALSE(schedule.isInBackground());
}

TEST_F(ScheduledChecking, TakesATrayCommandInTheMiddleOfACheckBehindItsEnd) {
    tray.onCaption = [this](const std::string& caption) {
        if (caption != "Corvalence - Scheduled Checking In Progress.") return;
        EXPECT_TRUE(desk.work.isBusy());
        EXPECT_TRUE(schedule.isUnattended());
        schedule.trayOpen();
        EXPECT_FALSE(desk.frame.isVisible()) << "the check is still under way";
    };
    desk.trigger(Command::StartBackground);
    EXPECT_FALSE(schedule.isUnattended());
    ASSERT_TRUE(test::waitFor([&] { return desk.frame.isVisible(); }));
    EXPECT_FALSE(schedule.isUnattended()) << "whatever ended the round, somebody is there again";
    EXPECT_EQ(summaries, 1);
    const schedule::LogFiles logs(desk.world.vault());
    std::string log;
    schedule::LogView(desk.world.platform.files, logs.path(schedule::LogKind::Session),
                      desk.world.vault().session.key, desk.world.vault().session.chains.LogIV, {})
        .read(0, 100, [&](const schedule::LogRow& row) {
            log += row.text + "\n";
            return true;
        });
    EXPECT_THAT(log, HasSubstr("[ CANCELLED MID CHECK ]"));
}

TEST_F(ScheduledChecking, StaysInTheWindowOfADesktopWithoutTrayUntilThereIsOne) {
    hasTray = false;
    desk.trigger(Command::StartBackground);
    EXPECT_TRUE(desk.frame.isVisible());
    EXPECT_THAT(test::find<QLabel>(desk.frame, "workPane").text().toStdString(), HasSubstr("no status tray"));
    hasTray = true;
    EXPECT_TRUE(test::waitFor([&] { return !desk.frame.isVisible(); }));
    hasTray = false;
    EXPECT_TRUE(test::waitFor([&] { return desk.frame.isVisible(); }))
        << "the tray went: no way back but this";
    desk.trigger(Command::StopChecking);
    EXPECT_FALSE(schedule.isInBackground());
    EXPECT_TRUE(tray.icons.empty());

    tray.onCaption = [this](const std::string& caption) {
        if (caption == "Corvalence - Scheduled Checking In Progress.") desk.trigger(Command::StopChecking);
    };
    desk.trigger(Command::StartBackground);
    EXPECT_TRUE(test::waitFor([&] { return !schedule.isInBackground(); })) << "in the middle of a check";
}

}  // namespace
}  // namespace corvalence::gui
