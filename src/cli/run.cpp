#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/password_prompt.h"
#include "cli/session.h"
#include "cli/until_cancelled.h"
#include "platform/time_text.h"
#include "schedule/background_mode.h"
#include "schedule/schedule_list.h"
#include "schedule/schedule_round.h"
#include "schedule/timer_queue.h"

namespace corvalence::cli {

namespace {

constexpr std::chrono::milliseconds kSignalDelay{100};  // until a signal is seen
constexpr std::string_view kNoInterval =
    "The interval between checks is 0: nothing would ever be checked. Set it with:  corvalencectl schedule "
    "interval HH:MM:SS";

/// Asks once and answers with the same password from then on, as each round of checks is a start of its own.
class KeptPassword : public core::PasswordDialog {
  public:
    explicit KeptPassword(Context& context) : prompt_(context) {}

    std::optional<crypto::SecretText> show(const core::PasswordQuestion& question) override {
        if (isProved && !question.damaged) {
            wasRefused = question.again;
            return question.again ? std::nullopt : std::optional(crypto::SecretText(kept_.view()));
        }
        auto given = prompt_.show(question);
        if (given) kept_ = crypto::SecretText(given->view());
        return given;
    }

    bool isProved = false;
    bool wasRefused = false;  // later, as somebody has changed it

  private:
    PasswordPrompt prompt_;
    crypto::SecretText kept_;
};

/// The states of background mode, one line each: on a terminal the captions and the countdown, for the
/// service manager the captions, and on standard output what checks came to.
class BackgroundConsole : public schedule::EngineFront,
                          public schedule::Tray,
                          public schedule::BackgroundFront,
                          public schedule::WorkListener {
  public:
    BackgroundConsole(Context& context, KeptPassword& password)
        : context_(context),
          password_(password),
          configuration_(context.platform.settings, context.ui),
          timers_(context.platform.clock),
          line_(context.platform.clock, context.err),
          engine_(timers_, configuration_, context.platform.sound, *this),
          mode_(engine_, timers_, configuration_, context.ui, *this, *this),
          mail_(context.mail),
          waiting_(context.platform.process) {}

    /// Until a signal comes, or the program has to close.
    ExitCode run() {
        platform::Process& process = context_.platform.process;
        mode_.start();
        context_.supervisor.ready();
        while (!process.cancelRequested() && !isClosing_ && engine_.isArmed()) {
            if (const auto timer = timers_.due()) {
                mode_.timer(*timer);
            } else {
                context_.platform.clock.sleep(std::min(timers_.wait().value_or(kSignalDelay), kSignalDelay));
            }
        }
        const bool wasUnset = !process.cancelRequested() && !isClosing_;
        context_.supervisor.stopping();
        line_.clear();
        mode_.run(schedule::TrayCommand::Open);
        if (wasUnset) throw CommandEnd(ExitCode::Usage, std::string(kNoInterval));
        return isClosing_ || !isSessionKept_ ? ExitCode::Failed : ExitCode::Done;
    }

    // The engine's front.

    void countdown(const std::string& text) override {
        left_ = text;
        draw();
    }
    void visitSchedule(schedule::Timer tick) override {
        try {
            visitGuarded(tick);
        } catch (const base::FileFailure& failure) {
            // What one round meets must not end the watch.
            context_.ui.message(platform::Icon::Warning, failure.what());
        }
    }
    void visitGuarded(schedule::Timer tick) {
        const auto run = begin();
        if (!run) return;
        line_.clear();
        const auto openProgress = [this](const std::string& title) {
            return context_.ui.openProgress(title);
        };
        const schedule::WorkContext work{run->vault(), context_.machine, *this,
                                         mail_,        waiting_,         openProgress};
        schedule::visitSchedule(
            work, tick, {}, [this] { return !context_.platform.process.cancelRequested() && !isClosing_; });
    }
    void showSummary() override {
        // Nobody is there to choose: the session goes to the end of the log, as the dialog has it at first.
        const auto run = begin();
        isSessionKept_ = run != nullptr;
        if (run) {
            schedule::LogFiles(run->vault()).appendSession();
        } else {
            context_.ui.message(
                platform::Icon::Warning,
                "The session log was not added to the log file. It stays, and is with the next "
                "session.");
        }
    }

    // The tray.

    void add(int id, const schedule::TrayIcon& icon) override { modify(id, icon); }
    void modify(int id, const schedule::TrayIcon& icon) override {
        if (id != schedule::kMainIcon || icon.caption == caption_) return;
        caption_ = icon.caption;
        context_.supervisor.status(caption_);
        draw();
    }
    void remove(int) override {}
    bool animates() const override { return false; }

    // The window that is not there.

    void hideWindow() override {}
    void showWindow() override {}
    void wipeCopies() override {}  // no check is left in the middle
    void closeProgram() override { isClosing_ = true; }

    // The checks.

    void begins(const std::string& database, schedule::WorkKind kind) override {
        database_ = database;
        mode_.begins(database, kind);
    }
    void firstDifference() override { mode_.firstDifference(); }
    void progress(std::uint32_t position) override { mode_.progress(position); }
    void needsRestart() override { mode_.needsRestart(); }
    void ends(schedule::WorkResult result) override {
        static constexpr std::string_view kTexts[] = {
            " checked: nothing differs.",
            " checked: differences were found.",
            " checked: nothing differs, but not everything could be compared.",
            " does not exist!",
            " has been changed and cannot be checked!",
            " was not checked to the end."};
        line_.clear();
        context_.out << platform::formatFileTime(context_.platform.clock, context_.platform.clock.now()) +
                            "  Database: " + shown(database_) +
                            std::string(kTexts[static_cast<std::size_t>(result)]) + "\n"
                     << std::flush;
        mode_.ends(result);
    }

  private:
    /// A start of its own for each round, so that other commands find the installation free between them.
    /// Nothing where another command has it; the next tick tries again.
    std::unique_ptr<core::Run> begin() {
        std::unique_ptr<core::Run> run;
        switch (core::Run::start(context_.platform, password_, context_.options.wait, run)) {
            case core::StartResult::Ready:
                return run;
            case core::StartResult::AlreadyRunning:
            case core::StartResult::Cancelled:
                context_.ui.message(platform::Icon::Warning,
                                    "Another program is at work on the installation.");
                return nullptr;
            case core::StartResult::PasswordRefused:
                if (password_.wasRefused)
                    throw CommandEnd(ExitCode::Refused, "The password has been changed.");
                return nullptr;  // why was told; the next tick tries again
            case core::StartResult::NoInstallation:
            case core::StartResult::NotAdministrator:
                break;
        }
        throw CommandEnd(ExitCode::Refused);
    }

    void draw() {
        if (context_.options.quiet || !context_.terminal.errorIsTerminal()) return;
        line_.draw(caption_ + " " + left_);
    }

    Context& context_;
    KeptPassword& password_;
    settings::Configuration configuration_;
    schedule::TimerQueue timers_;
    ProgressLine line_;
    schedule::CheckingEngine engine_;
    schedule::BackgroundMode mode_;
    schedule::MailThread mail_;
    UntilCancelled waiting_;
    std::string caption_;
    std::string left_;
    std::string database_;
    bool isClosing_ = false;
    bool isSessionKept_ = true;
};

}  // namespace

ExitCode runUnattended(Context& context) {
    if (context.options.json) throw CommandEnd(ExitCode::Usage, "`run` writes lines, no document.");
    requireInstallation(context);
    const settings::Configuration configuration(context.platform.settings, context.ui);
    if (schedule::ScheduleSettings::read(configuration).interval.total().count() == 0) {
        throw CommandEnd(ExitCode::Usage, std::string(kNoInterval));
    }
    KeptPassword password(context);
    startRun(context, password);
    password.isProved = true;
    return BackgroundConsole(context, password).run();
}

}  // namespace corvalence::cli
