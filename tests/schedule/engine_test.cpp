#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "fake_clock.h"
#include "map_settings_store.h"
#include "recording_sound.h"
#include "schedule/background_mode.h"
#include "schedule/timer_queue.h"
#include "scripted_user_interface.h"
#include "settings/configuration.h"

namespace corvalence::test {
namespace {

using schedule::BackgroundMode;
using schedule::Timer;
using schedule::TrayCommand;
using schedule::TrayPicture;
using schedule::WorkKind;
using schedule::WorkResult;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;

/// An engine behind a tray, with checks that a test makes up: each visit begins and ends `checks` of them.
class Engine : public testing::Test,
               public schedule::EngineFront,
               public schedule::Tray,
               public schedule::BackgroundFront {
  protected:
    Engine() {
        set("Config10", "5");
        set("Config11", "N");
    }
    void set(const std::string& key, const std::string& text) {
        settings.texts[std::string(corvalence::settings::kKeyRoot) + key] = text;
    }
    void countdown(const std::string& text) override { shown = text; }
    void visitSchedule(Timer tick) override {
        ticks.push_back(tick);
        for (int check = 0; check < checks; ++check) {
            mode.begins("/db", kind);
            if (whileChecking) whileChecking();
            if (differs) mode.firstDifference();
            mode.ends(WorkResult::Same);
        }
    }
    void showSummary() override { ++summaries; }
    void add(int id, const schedule::TrayIcon& icon) override {
        EXPECT_TRUE(tray.emplace(id, icon).second) << id;
    }
    void modify(int id, const schedule::TrayIcon& icon) override {
        EXPECT_TRUE(tray.contains(id)) << id;
        tray[id] = icon;
    }
    void remove(int id) override { tray.erase(id); }
    void hideWindow() override { isHidden = true; }
    void showWindow() override { isHidden = false; }
    void wipeCopies() override {}
    void closeProgram() override { isClosing = true; }

    /// Lets so much time pass, timer by timer.
    void pass(milliseconds time) {
        const milliseconds end = clock.elapsed() + time;
        while (timers.wait() && clock.elapsed() + *timers.wait() <= end) {
            clock.advance(*timers.wait());
            mode.timer(*timers.due());
        }
        if (clock.elapsed() < end) clock.advance(end - clock.elapsed());
    }
    const std::string& caption() { return tray[schedule::kMainIcon].caption; }

    FakeClock clock;
    MapSettingsStore settings;
    ScriptedUserInterface ui;
    RecordingSound sound;
    settings::Configuration configuration{settings, ui};
    schedule::TimerQueue timers{clock};
    schedule::CheckingEngine engine{timers, configuration, sound, *this};
    BackgroundMode mode{engine, timers, configuration, ui, *this, *this};

    std::string shown;
    std::vector<Timer> ticks;
    int checks = 1;
    int summaries = 0;
    bool differs = false;
    bool isHidden = false;
    bool isClosing = false;
    WorkKind kind = WorkKind::Files;
    std::function<void()> whileChecking;
    std::map<int, schedule::TrayIcon> tray;
};

TEST_F(Engine, CountsDownTicksAndBeginsAnewBehindEachCheck) {
    ASSERT_TRUE(engine.start());
    pass(milliseconds(950));
    EXPECT_EQ(shown, "00:00:04");
    pass(milliseconds(4050));
    EXPECT_THAT(ticks, ElementsAre(Timer::ContinuousTick));
    // A check that takes long: nothing ticks in it, and the interval counts from its end.
    whileChecking = [this] {
        clock.advance(seconds(60));
        EXPECT_EQ(timers.wait(), std::nullopt);
    };
    pass(seconds(5));
    EXPECT_EQ(ticks.size(), 2U);
    pass(milliseconds(4999));
    EXPECT_EQ(ticks.size(), 2U);
    // Another interval and another way hold from the next start on, which is the end of a check.
    set("Config11", "P");
    whileChecking = {};
    pass(milliseconds(1));
    pass(seconds(5));
    EXPECT_EQ(ticks.back(), Timer::StandardTick);
    EXPECT_TRUE(sound.resources.empty());
    set("Config12", "0");
    engine.start();
    pass(milliseconds(1900));
    EXPECT_THAT(sound.resources, ElementsAre("blp", "blp"));
    engine.stop();
    EXPECT_EQ(shown, "00:00:00");
    EXPECT_EQ(summaries, 1);
    pass(seconds(60));
    EXPECT_EQ(ticks.size(), 4U);
    engine.stop();
    EXPECT_EQ(summaries, 1) << "nothing was checked since";
}

TEST_F(Engine, StartsNothingWithoutAnIntervalAndStopsInTheMiddleOfACheck) {
    set("Config11", "X");
    EXPECT_FALSE(engine.start());
    set("Config11", "N");
    set("Config10", "0");
    EXPECT_FALSE(engine.start());
    EXPECT_FALSE(engine.startBackground());
    EXPECT_EQ(timers.wait(), std::nullopt);
    set("Config10", "5");
    engine.start();
    whileChecking = [this] { engine.stop(); };
    pass(seconds(5));
    EXPECT_EQ(summaries, 1);
    pass(seconds(60));
    EXPECT_EQ(ticks.size(), 1U);
    // An empty schedule: ticks visit nothing, again and again.
    checks = 0;
    engine.start();
    pass(seconds(15));
    EXPECT_EQ(ticks.size(), 4U);
}

TEST_F(Engine, RunsBehindTheTrayWithCaptionsProgressAndMenus) {
    ASSERT_TRUE(mode.start());
    EXPECT_TRUE(isHidden);
    EXPECT_EQ(caption(), "Corvalence - Counting Down To Next Scheduled Check.");
    pass(milliseconds(340));
    EXPECT_EQ(tray[7].frame, 2);
    whileChecking = [this] {
        EXPECT_EQ(caption(), "Corvalence - Scheduled Checking In Progress.");
        EXPECT_EQ(tray.size(), 8U);
        mode.progress(platform::Progress::kSteps * 3 / 14 + 1);  // a row and a half of images
        EXPECT_EQ(tray[0].frame, 16);
        EXPECT_EQ(tray[1].frame, 8);
        EXPECT_EQ(tray[2].frame, 0);
        mode.progress(platform::Progress::kSteps);
        EXPECT_EQ(tray[0].frame, 0) << "a full row begins anew";
    };
    pass(seconds(5));
    EXPECT_THAT(ticks, ElementsAre(Timer::BackgroundTick));
    EXPECT_EQ(tray.size(), 1U);
    EXPECT_EQ(caption(), "Corvalence - Counting Down To Next Scheduled Check.");
    whileChecking = [this] { EXPECT_EQ(tray.size(), 1U); };
    mode.run(TrayCommand::HideProgress);
    mode.run(TrayCommand::StopAnimation);
    pass(seconds(5));
    EXPECT_EQ(tray[7].frame, 0);

    EXPECT_EQ(mode.openMenu()[1].text, "Stop Scheduled Checking");
    pass(seconds(30));
    EXPECT_EQ(ticks.size(), 2U) << "the menu was left without a choice";
    mode.run(TrayCommand::Stop);
    EXPECT_EQ(tray[7],
              (schedule::TrayIcon{TrayPicture::Paused, 0, "Corvalence - Scheduled Checking Paused."}));
    EXPECT_EQ(mode.openMenu()[1].text, "Start Scheduled Checking");
    EXPECT_EQ(summaries, 1);
    mode.run(TrayCommand::ViewSessionLog);
    EXPECT_EQ(mode.state(), BackgroundMode::State::Paused);
    mode.run(TrayCommand::Start);
    pass(seconds(5));
    EXPECT_EQ(ticks.size(), 3U);
    mode.run(TrayCommand::Open);
    EXPECT_EQ(mode.state(), BackgroundMode::State::Off);
    EXPECT_FALSE(isHidden);
    EXPECT_TRUE(tray.empty());
    EXPECT_EQ(timers.wait(), std::nullopt);
}

TEST_F(Engine, AlternatesTheIconAfterADifferenceUntilItIsReset) {
    mode.start();
    differs = true;
    kind = WorkKind::Registry;
    pass(seconds(5));
    differs = false;
    EXPECT_TRUE(mode.isAlert());
    pass(milliseconds(100));
    EXPECT_EQ(tray[7], (schedule::TrayIcon{TrayPicture::Warning, 0, "Corvalence - Registry Change!"}));
    pass(milliseconds(500));
    EXPECT_EQ(tray[7].picture, TrayPicture::Animation);
    EXPECT_EQ(caption(), "Corvalence - Registry Change!");
    pass(milliseconds(500));
    EXPECT_EQ(tray[7].picture, TrayPicture::Warning);
    pass(seconds(5));
    EXPECT_EQ(ticks.size(), 2U) << "checking goes on";
    EXPECT_TRUE(mode.isAlert());

    const auto pictures = [this] {
        std::set<TrayPicture> seen;
        for (int half = 0; half < 2; ++half) {
            pass(milliseconds(500));
            seen.insert(tray[7].picture);
        }
        return seen;
    };
    mode.openMenu();
    EXPECT_EQ(tray[7].picture, TrayPicture::Paused);
    EXPECT_THAT(pictures(), ElementsAre(TrayPicture::Warning, TrayPicture::Paused))
        << "left without a choice";
    mode.run(TrayCommand::ShowProgress);
    EXPECT_THAT(pictures(), ElementsAre(TrayPicture::Animation, TrayPicture::Warning));
    mode.run(TrayCommand::ResetWarning);
    EXPECT_FALSE(mode.isAlert());
    pass(milliseconds(1000));
    EXPECT_EQ(caption(), "Corvalence - Counting Down To Next Scheduled Check.");
}

TEST_F(Engine, HasNoDifferenceLeftOnceItWasPaused) {
    mode.start();
    mode.run(TrayCommand::StopAnimation);
    differs = true;
    pass(seconds(5));
    differs = false;
    mode.run(TrayCommand::Stop);
    mode.run(TrayCommand::Start);
    pass(seconds(5));
    EXPECT_EQ(caption(), "Corvalence - Counting Down To Next Scheduled Check.") << "the check is over";
}

TEST_F(Engine, ClosesWhereOnlyARestartHelps) {
    mode.start();
    whileChecking = [this] { mode.needsRestart(); };
    pass(seconds(5));
    EXPECT_TRUE(isClosing);
    EXPECT_THAT(ui.messages.back().text,
                testing::StartsWith("Corvalence has detected a file inconsistency."));
    pass(seconds(60));
    EXPECT_EQ(ticks.size(), 1U);
}

}  // namespace
}  // namespace corvalence::test
