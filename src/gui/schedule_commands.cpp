#include "gui/schedule_commands.h"

#include <QApplication>

#include "gui/dialogs/schedule_window.h"
#include "gui/dialogs/single_schedule_window.h"
#include "schedule/log_files.h"
#include "schedule/schedule_dialog.h"

namespace corvalence::gui {

namespace {

using schedule::TrayCommand;
using shell::Command;

constexpr std::chrono::seconds kTrayPoll{2};
constexpr std::string_view kNoTray =
    "This desktop has no status tray: scheduled checking goes on in this window.";

constexpr std::string_view kHeldBack = "Scheduled checking goes on once the open database is closed.";

/// Whether a command has to wait for the end of a check, which it then has no use for.
bool leavesCheck(TrayCommand command) {
    return command == TrayCommand::Open || command == TrayCommand::Stop ||
           command == TrayCommand::ViewSessionLog;
}

}  // namespace

/// A check behind the tray: nothing is shown, but the tray lives.
class ScheduleCommands::BackgroundProgress : public platform::Progress {
  public:
    explicit BackgroundProgress(ScheduleCommands& commands) : commands_(commands) {}

    bool cancelled() override {
        commands_.pump_.pump();
        return commands_.isCheckLeft_ || commands_.work_.isEnding();
    }

  private:
    ScheduleCommands& commands_;
};

ScheduleCommands::ScheduleCommands(Workspace& workspace, Parts parts)
    : work_(workspace),
      parts_(std::move(parts)),
      timers_([this] { return mayCheck(); }, [this](schedule::Timer timer) { fire(timer); }),
      engine_(timers_, work_.configuration(), *this, *this),
      mode_(engine_, timers_, work_.configuration(), work_.platform().ui, parts_.tray, *this),
      mail_(parts_.mail) {
    CommandActions& actions = work_.frame().actions();
    actions.handle(Command::StartChecking, [this] { start(); });
    actions.handle(Command::StopChecking, [this] { stop(); });
    actions.handle(Command::StartBackground, [this] {
        tellMissingInterval();
        startBackground();
    });
    actions.handle(Command::ViewSessionLog, [this] { viewSession(); });
    actions.handle(Command::CheckingSchedule, [this] { editSchedule(); });
    actions.handle(Command::ScheduleChecks, [this] { scheduleOpenDatabase(); });
    work_.onIdle = [this] { idle(); };
    trayPoll_.setInterval(kTrayPoll);
    QObject::connect(&trayPoll_, &QTimer::timeout, [this] { followTray(); });
    // A check that the window of a desktop without tray stands beside is not to be waited for.
    QObject::connect(actions.action(Command::StopChecking), &QAction::triggered, &trayPoll_, [this] {
        if (isUnattended_) trayCommand(TrayCommand::Open);
    });
    countdown(schedule::countdownText(std::chrono::seconds(0)));
}

bool ScheduleCommands::mayCheck() {
    const bool isListOpen = work_.state().view == shell::View::FileList;
    if (isListOpen) work_.frame().setStatus(0, std::string(kHeldBack));
    return !work_.isBusy() && !isListOpen;
}

ScheduleCommands::~ScheduleCommands() {
    work_.onIdle = [] {};
}

void ScheduleCommands::start() {
    if (work_.state().view == shell::View::FileList) {
        work_.platform().ui.message(
            platform::Icon::Information,
            "You have to close the open database before starting the scheduled checking.");
        return;
    }
    tellMissingInterval();
    engine_.start();
    work_.setScheduleRunning(engine_.isArmed());
}

/// Without it a start does nothing that could be seen.
void ScheduleCommands::tellMissingInterval() {
    if (work_.state().view == shell::View::FileList) return;  // what is told then comes first
    const auto settings = schedule::ScheduleSettings::read(work_.configuration());
    if (settings.interval.total().count() != 0) return;
    work_.platform().ui.message(
        platform::Icon::Information,
        "Nothing is checked by the clock yet: no interval is set.\n\nSet one, and the "
        "databases to check, with 'Checking Schedule'.");
}

void ScheduleCommands::startBackground() {
    if (work_.state().view == shell::View::FileList) {
        work_.platform().ui.message(
            platform::Icon::Information,
            "You have to close the open database before starting background checking.");
        return;
    }
    mode_.start();
    work_.setScheduleRunning(engine_.isArmed());
}

void ScheduleCommands::stop() {
    // Where there is no tray, the window may stand in background mode.
    isInBackground() ? mode_.run(TrayCommand::Open) : engine_.stop();
    work_.setScheduleRunning(false);
}

void ScheduleCommands::stopWithoutSummary() {
    engine_.stopWithoutSummary();
    stop();
}

void ScheduleCommands::end() {
    engine_.hold();
    trayPoll_.stop();
    for (const auto timer :
         {schedule::Timer::Animation, schedule::Timer::WarningOn, schedule::Timer::WarningOff})
        timers_.kill(timer);
    for (int id = 0; id <= schedule::kMainIcon; ++id)
        parts_.tray.remove(id);
}

/// The session ends with its summary, and goes on as another one.
void ScheduleCommands::viewSession() {
    const bool wasRunning = engine_.isArmed();
    if (isInBackground()) {
        mode_.run(TrayCommand::ViewSessionLog);
    } else {
        engine_.stopWithoutSummary();
        parts_.showSummary();
        if (wasRunning) engine_.start();
    }
    work_.setScheduleRunning(engine_.isArmed());
}

void ScheduleCommands::editSchedule() {
    stop();
    schedule::ScheduleDialog dialog(work_.vault());
    ScheduleWindow(dialog, work_.platform().ui, work_.openHelp(), &work_.frame()).exec();
}

void ScheduleCommands::scheduleOpenDatabase() {
    SingleScheduleWindow window(work_.vault(), work_.database()->path(), work_.openHelp(), &work_.frame());
    if (window.exec() == QDialog::Accepted && window.runsMinimized()) work_.frame().showMinimized();
}

void ScheduleCommands::fire(schedule::Timer timer) {
    isInBackground() ? mode_.timer(timer) : engine_.timer(timer);
}

void ScheduleCommands::trayCommand(TrayCommand command) {
    if (work_.isBusy()) {
        waiting_.push_back(command);
        isCheckLeft_ = isCheckLeft_ || leavesCheck(command);
        return;
    }
    work_.perform([this, command] {
        mode_.run(command);
        work_.setScheduleRunning(engine_.isArmed());
    });
}

void ScheduleCommands::openTrayMenu() {
    mode_.openMenu();
    work_.setScheduleRunning(engine_.isArmed());
}

void ScheduleCommands::idle() {
    isCheckLeft_ = false;
    isUnattended_ = false;  // here, where also what the work has thrown is told
    if (!waiting_.empty()) {
        const TrayCommand command = waiting_.front();
        waiting_.pop_front();
        trayCommand(command);
        return;
    }
    timers_.release();
}

void ScheduleCommands::countdown(const std::string& text) {
    work_.frame().setInfo(Command::CountdownBar, shell::countdownBar(text));
}

void ScheduleCommands::visitSchedule(schedule::Timer tick) {
    work_.perform([this, tick] {
        isUnattended_ = isInBackground();
        const auto openProgress = [this](const std::string& title) -> std::unique_ptr<platform::Progress> {
            if (isInBackground()) return std::make_unique<BackgroundProgress>(*this);
            return work_.platform().ui.openProgress(title);
        };
        const schedule::WorkContext context{work_.vault(), work_.machine(), *this,
                                            mail_,         *this,           openProgress};
        schedule::visitSchedule(
            context, tick, [this](const std::string& database) { checkPrompted(database); },
            [this] { return !isCheckLeft_ && !work_.isEnding(); });
        // What the panes say is of databases that are not open.
        work_.frame().setStatus(0, "Ready");
        tellWhereItRuns();
        if (!work_.database()) work_.frame().setStatus(1, {});
        work_.setScheduleRunning(engine_.isArmed());
    });
}

void ScheduleCommands::checkPrompted(const std::string& database) {
    begins(database, schedule::WorkKind::Files);
    // Whatever ends the check, the cycle goes on.
    struct End {
        ScheduleCommands& commands;
        ~End() { commands.ends(schedule::WorkResult::Same); }
    } const end{*this};
    parts_.checkWithPrompts(database);
}

/// Checks with prompts leave nothing in the log.
void ScheduleCommands::showSummary() {
    const std::string log = schedule::LogFiles(work_.vault()).path(schedule::LogKind::Session);
    const auto status = work_.platform().files.status(log, platform::Follow::Yes);
    if (status && status->size > 0) parts_.showSummary();
}

void ScheduleCommands::playResource(const std::string& name) {
    if (work_.state().view != shell::View::FileList) work_.platform().sound.playResource(name);
}

void ScheduleCommands::playFile(const std::string& path) {
    work_.platform().sound.playFile(path);
}

void ScheduleCommands::hideWindow() {
    trayPoll_.start();
    tellWhereItRuns();
    followTray();
}

void ScheduleCommands::tellWhereItRuns() {
    if (isInBackground() && !parts_.hasTray()) work_.frame().setStatus(0, std::string(kNoTray));
}

/// The tray of a session may come up after the programs that begin with it, and go before them.
void ScheduleCommands::followTray() {
    Frame& frame = work_.frame();
    if (!isInBackground()) {
        trayPoll_.stop();
    } else if (!parts_.hasTray()) {
        if (frame.isVisible()) return;
        tellWhereItRuns();
        frame.show();
    } else if (frame.isVisible() && work_.state().view == shell::View::Empty &&
               QApplication::activeModalWidget() == nullptr) {
        frame.hide();
    }
}

void ScheduleCommands::showWindow() {
    work_.frame().showMaximized();
    work_.frame().raise();
    work_.frame().activateWindow();
}

/// Nothing of a check lies in plain once its work has ended, and none is under way here.
void ScheduleCommands::wipeCopies() {}

void ScheduleCommands::closeProgram() {
    work_.requestEnd();
}

void ScheduleCommands::begins(const std::string& database, schedule::WorkKind kind) {
    mode_.begins(database, kind);
}

void ScheduleCommands::needsRestart() {
    isUnattended_ = false;  // the last word, which is waited for
    mode_.needsRestart();
}

void ScheduleCommands::ends(schedule::WorkResult result) {
    mode_.ends(result);
}

bool ScheduleCommands::goOn() {
    pump_.pump();
    return !isCheckLeft_ && !work_.isEnding();
}

}  // namespace corvalence::gui
