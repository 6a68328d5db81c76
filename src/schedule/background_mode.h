#pragma once

#include <span>
#include <string>
#include <string_view>

#include "schedule/checking_engine.h"

namespace corvalence::schedule {

/// The pictures of tray icons; those of several frames are told apart by their number.
enum class TrayPicture { Animation, Warning, Paused, Progress };

inline constexpr int kAnimationFrames = 11;
inline constexpr int kProgressFrames = 17;
inline constexpr int kProgressIcons = 7;  // with the ids 0 to 6
inline constexpr int kMainIcon = 7;

struct TrayIcon {
    TrayPicture picture = TrayPicture::Animation;
    int frame = 0;
    std::string caption;  // at most 63 bytes

    bool operator==(const TrayIcon&) const = default;
};

/// Where the icons of background mode are shown, by their ids.
class Tray {
  public:
    virtual ~Tray() = default;
    virtual void add(int id, const TrayIcon& icon) = 0;
    virtual void modify(int id, const TrayIcon& icon) = 0;
    virtual void remove(int id) = 0;
    /// Whether frames of an animation can be told apart.
    virtual bool animates() const { return true; }
};

/// The window behind the tray.
class BackgroundFront {
  public:
    virtual ~BackgroundFront() = default;
    virtual void hideWindow() = 0;
    virtual void showWindow() = 0;
    /// Wipes what a check that is left in the middle has in plain.
    virtual void wipeCopies() = 0;
    virtual void closeProgram() = 0;
};

enum class TrayCommand {
    Open,
    Start,
    Stop,
    ViewSessionLog,
    ResetWarning,
    StartAnimation,
    StopAnimation,
    ShowProgress,
    HideProgress
};

struct TrayMenuItem {
    std::string_view menu;  // sub-menu that it stands in; empty for none
    std::string_view text;
    TrayCommand command;
};

/// Checking with a hidden window: counts down behind one tray icon, shows the progress of a check in a row of
/// others, and alternates the icon once something differs. Off, running or paused; a difference is a state of
/// running that lasts until it is reset, or running ends.
///
/// Checks are told to it; it hands them on to the engine.
class BackgroundMode : public WorkListener {
  public:
    enum class State { Off, Running, Paused };

    BackgroundMode(CheckingEngine& engine, Timers& timers, const settings::Configuration& configuration,
                   platform::UserInterface& ui, Tray& tray, BackgroundFront& front);

    State state() const noexcept { return state_; }
    bool isAlert() const noexcept { return isAlert_; }

    /// The setting is another one; what is chosen in the menu later counts in its place.
    void setAnimated(bool isAnimated) noexcept { isAnimated_ = isAnimated; }

    /// Enters background mode, or enters it anew. False where the interval is 0: the icon shows, but nothing
    /// is ever checked.
    bool start();
    void run(TrayCommand command);
    /// The menu at the tray as it stands now.
    std::span<const TrayMenuItem> menu() const;
    /// The same, when the right button was pressed: nothing is checked until a command is given.
    std::span<const TrayMenuItem> openMenu();
    /// For the three timers of the icon, and those of the engine.
    void timer(Timer timer);

    void begins(const std::string& database, WorkKind kind) override;
    void firstDifference() override;
    void progress(std::uint32_t position) override;
    void needsRestart() override;
    void ends(WorkResult result) override;

  private:
    void open();
    void pause();
    void showHeld();
    void resetWarning();
    void viewSessionLog();
    void endWarning();
    void showMain(TrayPicture picture, std::string_view caption);
    void showProgress(int filled);
    void hideProgress();
    bool showsProgress() const;
    std::string_view usualCaption() const noexcept;

    CheckingEngine& engine_;
    Timers& timers_;
    const settings::Configuration& configuration_;
    platform::UserInterface& ui_;
    Tray& tray_;
    BackgroundFront& front_;
    State state_ = State::Off;
    bool isAlert_ = false;
    bool isAnimated_;
    bool isMainShown_ = false;
    bool isChecking_ = false;
    std::optional<bool> progressChoice_;  // the setting's where there is none
    int progressShown_ = -1;              // images of the row that are filled; -1: there is no row
    int frame_ = 0;
    WorkKind kind_ = WorkKind::Files;
};

}  // namespace corvalence::schedule
