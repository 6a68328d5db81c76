#include "schedule/background_mode.h"

#include <algorithm>
#include <array>

namespace corvalence::schedule {

namespace {

constexpr std::string_view kCounting = "Corvalence - Counting Down To Next Scheduled Check.";
constexpr std::string_view kInProgress = "Corvalence - Scheduled Checking In Progress.";
constexpr std::string_view kPaused = "Corvalence - Scheduled Checking Paused.";
constexpr std::array<std::string_view, 5> kChanges = {
    "Corvalence - File Change!", "Corvalence - Directory Structure Change!",
    "Corvalence - Permissions Change!", "Corvalence - Registry Change!", "Corvalence - Services Change!"};

constexpr std::string_view kRestartNeeded =
    "Corvalence has detected a file inconsistency. Corvalence can repair this but has to shut down first. "
    "Relaunch Corvalence and the problem will be fixed.";

constexpr std::string_view kAnimationMenu = "Animated Icon";
constexpr std::string_view kProgressMenu = "Progress Bar";

using Menu = std::array<TrayMenuItem, 8>;

constexpr Menu menuWith(TrayMenuItem second) {
    return {{{"", "Open Corvalence", TrayCommand::Open},
             second,
             {"", "View Session Log ", TrayCommand::ViewSessionLog},
             {"", "Reset File Change Warning", TrayCommand::ResetWarning},
             {kAnimationMenu, "Start", TrayCommand::StartAnimation},
             {kAnimationMenu, "Stop", TrayCommand::StopAnimation},
             {kProgressMenu, "Visible", TrayCommand::ShowProgress},
             {kProgressMenu, "Invisible", TrayCommand::HideProgress}}};
}

constexpr Menu kMenuWhilePaused = menuWith({"", "Start Scheduled Checking", TrayCommand::Start});
constexpr Menu kMenuWhileRunning = menuWith({"", "Stop Scheduled Checking", TrayCommand::Stop});

// A row that is full: each icon shows its last image.
constexpr int kImagesPerIcon = kProgressFrames - 1;
constexpr int kRow = kProgressIcons * kImagesPerIcon;

}  // namespace

BackgroundMode::BackgroundMode(CheckingEngine& engine, Timers& timers,
                               const settings::Configuration& configuration, platform::UserInterface& ui,
                               Tray& tray, BackgroundFront& front)
    : engine_(engine),
      timers_(timers),
      configuration_(configuration),
      ui_(ui),
      tray_(tray),
      front_(front),
      isAnimated_(configuration.isOn(settings::key::kTrayAnimation)) {}

bool BackgroundMode::start() {
    engine_.stopWithoutSummary();
    isChecking_ = false;
    // The animation would paint over a warning, which no other command is to end.
    if (tray_.animates() && !isAlert_) timers_.set(Timer::Animation, kAnimationPeriod);
    frame_ = 0;
    state_ = State::Running;
    showMain(TrayPicture::Animation, kCounting);
    front_.hideWindow();
    return engine_.startBackground();
}

void BackgroundMode::run(TrayCommand command) {
    switch (command) {
        case TrayCommand::Open:
            open();
            return;
        case TrayCommand::Stop:
            pause();
            return;
        case TrayCommand::ViewSessionLog:
            viewSessionLog();
            return;
        case TrayCommand::ResetWarning:
            resetWarning();
            return;
        case TrayCommand::Start:
            break;
        case TrayCommand::StartAnimation:
        case TrayCommand::StopAnimation:
            isAnimated_ = command == TrayCommand::StartAnimation;
            break;
        case TrayCommand::ShowProgress:
        case TrayCommand::HideProgress:
            progressChoice_ = command == TrayCommand::ShowProgress;
            break;
    }
    start();
}

std::span<const TrayMenuItem> BackgroundMode::menu() const {
    return state_ == State::Paused ? kMenuWhilePaused : kMenuWhileRunning;
}

std::span<const TrayMenuItem> BackgroundMode::openMenu() {
    engine_.hold();
    if (state_ == State::Running) showHeld();
    return menu();
}

/// Nothing is checked until a command is given, and the icon must not say otherwise. A warning goes on
/// alternating with that.
void BackgroundMode::showHeld() {
    timers_.kill(Timer::Animation);
    showMain(TrayPicture::Paused, kPaused);
}

void BackgroundMode::open() {
    endWarning();
    timers_.kill(Timer::Animation);
    front_.wipeCopies();
    front_.showWindow();
    hideProgress();
    tray_.remove(kMainIcon);
    isMainShown_ = false;
    state_ = State::Off;
    engine_.stop();
}

void BackgroundMode::pause() {
    endWarning();
    timers_.kill(Timer::Animation);
    front_.wipeCopies();
    tray_.remove(kMainIcon);
    isMainShown_ = false;
    state_ = State::Paused;
    showMain(TrayPicture::Paused, kPaused);
    engine_.stop();
}

void BackgroundMode::viewSessionLog() {
    endWarning();
    front_.wipeCopies();
    engine_.stop();
    if (state_ == State::Running) start();
}

void BackgroundMode::resetWarning() {
    if (state_ == State::Paused) {
        showMain(TrayPicture::Paused, kPaused);
        return;
    }
    endWarning();
    start();
}

void BackgroundMode::endWarning() {
    timers_.kill(Timer::WarningOn);
    timers_.kill(Timer::WarningOff);
    isAlert_ = false;
}

void BackgroundMode::timer(Timer timer) {
    const std::string_view change = kChanges[static_cast<std::size_t>(kind_)];
    switch (timer) {
        case Timer::Animation:
            if (!isAnimated_) return;
            frame_ = (frame_ + 1) % kAnimationFrames;
            showMain(TrayPicture::Animation, usualCaption());
            return;
        case Timer::WarningOn:
            showMain(TrayPicture::Warning, change);
            timers_.kill(Timer::WarningOn);
            timers_.set(Timer::WarningOff, kWarningPeriod);
            return;
        case Timer::WarningOff:
            engine_.isArmed() ? showMain(TrayPicture::Animation, change)
                              : showMain(TrayPicture::Paused, kPaused);
            timers_.kill(Timer::WarningOff);
            timers_.set(Timer::WarningOn, kWarningPeriod);
            return;
        default:
            engine_.timer(timer);
    }
}

void BackgroundMode::begins(const std::string& database, WorkKind kind) {
    engine_.begins(database, kind);
    if (state_ == State::Off) return;
    isChecking_ = true;
    kind_ = kind;
    showMain(TrayPicture::Animation, kInProgress);
    if (showsProgress()) showProgress(0);
}

void BackgroundMode::firstDifference() {
    engine_.firstDifference();
    if (state_ == State::Off) return;
    timers_.set(Timer::WarningOn, kFirstWarning);
    timers_.kill(Timer::Animation);
    isAlert_ = true;
}

void BackgroundMode::progress(std::uint32_t position) {
    engine_.progress(position);
    if (progressShown_ < 0) return;
    showProgress(static_cast<int>(std::uint64_t{position} * kRow / platform::Progress::kSteps));
}

void BackgroundMode::needsRestart() {
    engine_.needsRestart();
    hideProgress();
    tray_.remove(kMainIcon);
    isMainShown_ = false;
    ui_.message(platform::Icon::Stop, std::string(kRestartNeeded));
    front_.closeProgram();
}

void BackgroundMode::ends(WorkResult result) {
    isChecking_ = false;
    hideProgress();
    if (state_ == State::Running && !isAlert_ && isMainShown_) showMain(TrayPicture::Animation, kCounting);
    engine_.ends(result);
    // The menu was left without a choice in the meantime.
    if (state_ == State::Running && !engine_.isArmed() && isMainShown_) showHeld();
}

std::string_view BackgroundMode::usualCaption() const noexcept {
    return isChecking_ ? kInProgress : kCounting;
}

void BackgroundMode::showMain(TrayPicture picture, std::string_view caption) {
    const TrayIcon icon{picture, picture == TrayPicture::Animation ? frame_ : 0, std::string(caption)};
    isMainShown_ ? tray_.modify(kMainIcon, icon) : tray_.add(kMainIcon, icon);
    isMainShown_ = true;
}

bool BackgroundMode::showsProgress() const {
    return progressChoice_ ? *progressChoice_ : configuration_.isOn(settings::key::kTrayProgress);
}

/// The row with so many of its images filled, from the left; a full one begins anew.
void BackgroundMode::showProgress(int filled) {
    const int now = filled % kRow;
    if (now == progressShown_) return;
    for (int id = 0; id < kProgressIcons; ++id) {
        const auto frameOf = [&](int images) {
            return std::clamp(images - id * kImagesPerIcon, 0, kImagesPerIcon);
        };
        const TrayIcon icon{TrayPicture::Progress, frameOf(now), std::string(kInProgress)};
        if (progressShown_ < 0) {
            tray_.add(id, icon);
        } else if (frameOf(now) != frameOf(progressShown_)) {
            tray_.modify(id, icon);
        }
    }
    progressShown_ = now;
}

void BackgroundMode::hideProgress() {
    for (int id = 0; progressShown_ >= 0 && id < kProgressIcons; ++id)
        tray_.remove(id);
    progressShown_ = -1;
}

}  // namespace corvalence::schedule
