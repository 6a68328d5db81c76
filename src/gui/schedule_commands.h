#pragma once

#include <QTimer>
#include <deque>
#include <memory>

#include "gui/qt_timers.h"
#include "gui/support/event_pump.h"
#include "gui/workspace.h"
#include "schedule/background_mode.h"
#include "schedule/mail_thread.h"
#include "schedule/schedule_round.h"

namespace corvalence::gui {

/// Scheduled checking from the window and behind the tray: the engine and the states of background mode, on
/// the window's timers. A round of checks is a piece of work of the workspace.
class ScheduleCommands : public schedule::EngineFront,
                         public platform::Sound,
                         public schedule::BackgroundFront,
                         public schedule::WorkListener,
                         public schedule::MailWaiting {
  public:
    struct Parts {
        std::shared_ptr<platform::Mail> mail;
        schedule::Tray& tray;
        std::function<bool()> hasTray;
        /// Checks an open database of files with its prompts.
        std::function<void(const std::string& database)> checkWithPrompts;
        /// "Scheduled Checking Summary.", for what becomes of the session's log.
        std::function<void()> showSummary;
    };

    /// Takes over its commands of the window; the workspace is to outlive it.
    ScheduleCommands(Workspace& workspace, Parts parts);
    ~ScheduleCommands() override;

    /// Enters background mode, as "Start Scheduled Checking [ Background Mode ]".
    void startBackground();
    /// Says in the window why it stands there in background mode, where that is so.
    void tellWhereItRuns();
    /// Ends scheduled checking, with the summary of the session.
    void stop();
    /// The same, and the session's log waits for the summary of another session.
    void stopWithoutSummary();
    /// Ends it for good and without a word, with the program.
    void end();
    /// A check behind the tray is under way, with nobody to answer what it asks.
    bool isUnattended() const noexcept { return isUnattended_; }
    void setAnimated(bool isAnimated) noexcept { mode_.setAnimated(isAnimated); }
    bool isInBackground() const noexcept { return mode_.state() != schedule::BackgroundMode::State::Off; }

    // From the tray.
    void trayOpen() { trayCommand(schedule::TrayCommand::Open); }
    std::span<const schedule::TrayMenuItem> trayMenu() const { return mode_.menu(); }
    /// The menu was asked for: nothing is checked from now on until a command is given.
    void openTrayMenu();
    /// Runs at once, or behind the check that is under way; one that leaves the check cancels it.
    void trayCommand(schedule::TrayCommand command);

    void countdown(const std::string& text) override;
    void visitSchedule(schedule::Timer tick) override;
    void showSummary() override;

    // Of the countdown: it goes on in silence while files are listed.
    void playResource(const std::string& name) override;
    void playFile(const std::string& path) override;

    void hideWindow() override;
    void showWindow() override;
    void wipeCopies() override;
    void closeProgram() override;

    void begins(const std::string& database, schedule::WorkKind kind) override;
    void firstDifference() override { mode_.firstDifference(); }
    void progress(std::uint32_t position) override { mode_.progress(position); }
    void needsRestart() override;
    void ends(schedule::WorkResult result) override;

    bool goOn() override;

  private:
    class BackgroundProgress;

    bool mayCheck();
    void start();
    void tellMissingInterval();
    void viewSession();
    void editSchedule();
    void scheduleOpenDatabase();
    void fire(schedule::Timer timer);
    void idle();
    void followTray();
    void checkPrompted(const std::string& database);

    Workspace& work_;
    Parts parts_;
    QtTimers timers_;
    schedule::CheckingEngine engine_;
    schedule::BackgroundMode mode_;
    schedule::MailThread mail_;
    EventPump pump_;
    QTimer trayPoll_;
    std::deque<schedule::TrayCommand> waiting_;  // tray commands
    bool isCheckLeft_ = false;                   // the check behind the tray is to end
    bool isUnattended_ = false;
};

}  // namespace corvalence::gui
