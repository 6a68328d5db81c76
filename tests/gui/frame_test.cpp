#include "gui/frame.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QToolBar>
#include <QToolButton>
#include <set>

#include "driving.h"
#include "gui/qt_timers.h"
#include "gui/qt_tray.h"
#include "gui/support/icons.h"
#include "gui/views/list_table.h"

namespace corvalence::gui {
namespace {

using shell::Command;
using shell::Mode;
using shell::View;
using test::find;

QMenu& menu(Frame& frame, const QString& title) {
    for (QAction* action : frame.menuBar()->actions()) {
        if (action->text() == title) return *action->menu();
    }
    throw std::runtime_error("no such menu: " + title.toStdString());
}

TEST(Frame, HasEveryCommandInAMenuWithPictureAndFollowsTheState) {
    Frame frame;
    std::set<const QAction*> inMenus;
    for (QAction* top : frame.menuBar()->actions()) {
        for (QAction* action : top->menu()->actions())
            inMenus.insert(action);
    }
    for (const shell::CommandRow& row : shell::commandRows()) {
        const QAction* action = frame.actions().action(row.command);
        EXPECT_TRUE(inMenus.count(action)) << row.text;
        EXPECT_EQ(action->icon().isNull(), row.icon.empty()) << row.text << ": its picture is missing";
        EXPECT_TRUE(row.toolBar == shell::ToolBar::None || !row.icon.empty()) << row.text;
    }

    shell::FrameState state;
    frame.update(state);
    EXPECT_TRUE(menu(frame, "&Add Files").menuAction()->isVisible());
    EXPECT_FALSE(frame.actions().action(Command::AddByLocation)->isEnabled());
    state = {.view = View::FileList, .isDatabaseOpen = true};
    frame.update(state);
    EXPECT_TRUE(frame.actions().action(Command::AddByLocation)->isEnabled());

    state = {.mode = Mode::Registry};
    frame.update(state);
    EXPECT_FALSE(menu(frame, "&Add Files").menuAction()->isVisible());
    EXPECT_EQ(frame.actions().action(Command::CheckDatabase)->text(), "Check The Open Database");
    EXPECT_EQ(frame.actions().action(Command::CheckDatabase)->toolTip(), "Check The Open Database (F5)");
    EXPECT_TRUE(frame.actions().action(Command::RegistryMode)->isChecked()) << "its button shows pressed";
    EXPECT_FALSE(frame.actions().action(Command::FileContentsMode)->isChecked());
}

TEST(Frame, ShowsTheBarsOfFilesInTheModeOfFilesAloneAndTellsThemApart) {
    Frame frame;
    frame.show();
    const auto& add = find<QToolBar>(frame, "addFilesToolBar");
    frame.actions().action(Command::AddToolBar)->trigger();
    frame.update({.mode = Mode::Services});
    EXPECT_FALSE(add.isVisible());
    EXPECT_TRUE(find<QToolBar>(frame, "mainToolBar").isVisible());
    EXPECT_TRUE(frame.isBarShown(Command::AddToolBar)) << "it is shown again in its mode";
    frame.actions().action(Command::AddToolBar)->trigger();
    frame.actions().action(Command::AddToolBar)->trigger();
    EXPECT_FALSE(add.isVisible()) << "not by its command either";
    frame.update({});
    EXPECT_TRUE(add.isVisible());

    EXPECT_EQ(frame.actions().action(Command::AddAllFiles)->toolTip(), "Add Files: All Files");
    EXPECT_EQ(frame.actions().action(Command::RemoveAllFiles)->toolTip(), "Remove Files: All Files");
    QMenu list;
    ListTable table;
    frame.fillListMenu(list, table);
    EXPECT_TRUE(list.actions().contains(menu(frame, "&Remove Files").menuAction()))
        << "by itself, Selected Files does not say what becomes of them";
}

TEST(Frame, RemembersBarsAndButtonsAndRefusesWhatIsNoLayout) {
    QByteArray layout;
    {
        Frame frame;
        frame.show();
        EXPECT_TRUE(frame.isBarShown(Command::MemoryBar));
        frame.actions().action(Command::MemoryBar)->trigger();
        frame.actions().action(Command::AddToolBar)->trigger();
        frame.actions().action(Command::LargeButtons)->trigger();
        layout = frame.layout();
    }
    Frame frame;
    frame.show();
    EXPECT_FALSE(find<QToolBar>(frame, "addFilesToolBar").isVisible());
    ASSERT_TRUE(frame.restoreLayout(layout));
    EXPECT_FALSE(frame.isBarShown(Command::MemoryBar));
    EXPECT_TRUE(find<QToolBar>(frame, "addFilesToolBar").isVisible());
    EXPECT_EQ(find<QToolBar>(frame, "mainToolBar").iconSize(), QSize(32, 32));
    EXPECT_FALSE(frame.restoreLayout("no layout"));
    EXPECT_FALSE(frame.restoreLayout(layout.left(20)));
}

TEST(Frame, ShowsTheSelfCheckOfADatabaseBesideItsPane) {
    Frame frame;
    const auto& indicator = find<QLabel>(frame, "integrityIndicator");
    frame.setStatus(0, "Self check...Database File Changed!");
    EXPECT_EQ(indicator.accessibleName(), "Self check...Database File Changed!");
    frame.setStatus(1, "Database File Integrity ");
    EXPECT_FALSE(indicator.pixmap(Qt::ReturnByValue).isNull());
    EXPECT_EQ(indicator.accessibleName(), "Database File Integrity Self Check...OK") << "it was put back";
    frame.setStatus(1, "");
    EXPECT_TRUE(indicator.pixmap(Qt::ReturnByValue).isNull());
}

TEST(Frame, IsAsNarrowAsASmallScreenWhateverItShows) {
    Frame frame;
    frame.setStatus(0, std::string(5000, 'x'));
    frame.setInfo(Command::DiskSpaceBar, {"Disk space available: 1023.99 GB", 50});
    for (const Command bar : {Command::AddToolBar, Command::RemoveToolBar, Command::LargeButtons})
        frame.actions().action(bar)->setChecked(true);
    EXPECT_LE(frame.minimumSizeHint().width(), 1024);
    EXPECT_LE(frame.minimumSizeHint().height(), 768);
}

TEST(QtTimers, HoldATickBackWhileWorkGoesOnAndFireItBehind) {
    using schedule::Timer;
    bool mayTick = false;
    std::vector<Timer> fired;
    QtTimers timers([&] { return mayTick; }, [&](Timer timer) { fired.push_back(timer); });
    timers.set(Timer::ContinuousTick, std::chrono::milliseconds(5));
    timers.set(Timer::Countdown, std::chrono::milliseconds(5));
    ASSERT_TRUE(test::waitFor([&] { return fired.size() >= 5; }));
    EXPECT_EQ(std::count(fired.begin(), fired.end(), Timer::ContinuousTick), 0);
    timers.kill(Timer::Countdown);
    fired.clear();
    mayTick = true;
    timers.release();
    EXPECT_EQ(fired, (std::vector{Timer::ContinuousTick})) << "once, whatever it missed";
    timers.kill(Timer::ContinuousTick);
    fired.clear();
    test::waitFor([] { return false; }, 30);
    EXPECT_TRUE(fired.empty());
}

TEST(QtTray, HasAPictureForEveryIconOfBackgroundMode) {
    using schedule::TrayPicture;
    const auto isDrawn = [](TrayPicture picture, int frame) {
        return !icon(trayPictureName({picture, frame, {}})).isNull();
    };
    for (int frame = 0; frame < schedule::kAnimationFrames; ++frame)
        EXPECT_TRUE(isDrawn(TrayPicture::Animation, frame)) << frame;
    for (int frame = 0; frame < schedule::kProgressFrames; ++frame)
        EXPECT_TRUE(isDrawn(TrayPicture::Progress, frame)) << frame;
    EXPECT_TRUE(isDrawn(TrayPicture::Warning, 0) && isDrawn(TrayPicture::Paused, 0));
}

TEST(QtTray, HasItsMenuReadyAndTakesTheFirstLookOfTheDesktopForNoClick) {
    using schedule::TrayCommand;
    const std::array running{schedule::TrayMenuItem{"", "Stop Scheduled Checking", TrayCommand::Stop},
                             schedule::TrayMenuItem{"Animated Icon", "Start", TrayCommand::StartAnimation}};
    const std::array paused{schedule::TrayMenuItem{"", "Start Scheduled Checking", TrayCommand::Start}};
    bool isPaused = false;
    int openings = 0;
    std::vector<TrayCommand> commands;
    QtTray tray;
    tray.callbacks.menu = [&]() -> std::span<const schedule::TrayMenuItem> {
        if (isPaused) return paused;
        return running;
    };
    tray.callbacks.openMenu = [&] { ++openings; };
    tray.callbacks.command = [&](TrayCommand command) { commands.push_back(command); };
    tray.add(schedule::kMainIcon, {schedule::TrayPicture::Animation, 0, "Counting"});
    const QWidgetList all = QApplication::allWidgets();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [](const QWidget* each) { return each->objectName() == "trayMenu"; });
    ASSERT_NE(found, all.end());
    QMenu& menu = *qobject_cast<QMenu*>(*found);
    ASSERT_EQ(menu.actions().size(), 2);
    menu.aboutToShow();
    EXPECT_EQ(openings, 0);
    QAction* const stop = menu.actions().front();
    tray.modify(schedule::kMainIcon, {schedule::TrayPicture::Animation, 1, "Counting"});
    EXPECT_EQ(menu.actions().front(), stop) << "filled anew at a frame of the animation";
    menu.actions().back()->menu()->actions().front()->trigger();
    ASSERT_TRUE(test::waitFor([&] { return !commands.empty(); }));
    EXPECT_EQ(commands, std::vector{TrayCommand::StartAnimation});
    isPaused = true;
    tray.modify(schedule::kMainIcon, {schedule::TrayPicture::Paused, 0, "Paused"});
    ASSERT_EQ(menu.actions().size(), 1);
    EXPECT_EQ(menu.actions().front()->text(), "Start Scheduled Checking");
    EXPECT_TRUE(test::waitFor([&] {
        menu.aboutToShow();
        return openings > 0;
    }));
}

}  // namespace
}  // namespace corvalence::gui
