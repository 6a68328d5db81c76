#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "settings/configuration.h"

namespace corvalence::schedule {

/// The time between two rounds of checks, as it is entered.
struct CheckInterval {
    int hours = 0;
    int minutes = 0;
    int seconds = 0;

    /// Up to 24:59:59.
    bool isAllowed() const noexcept;
    /// Of 0 nothing is ever checked.
    std::chrono::seconds total() const noexcept;
    /// "01:30:00".
    std::string text() const;
    /// Of "1:30:00" or "01:30:00"; nothing for anything else, and for what is not allowed.
    static std::optional<CheckInterval> parse(std::string_view text);

    bool operator==(const CheckInterval&) const = default;
};

/// "01:30:00" of a countdown: two digits each, more for hours from 100 on.
std::string countdownText(std::chrono::seconds left);

enum class CheckReaction {
    Continuous,  // "N": a log, nobody is asked
    Standard,    // "P": asks at changed files and tells the end of each check
};

/// How scheduled checks are done, but not what they check: the keys Config8 to 11, 28 and 29.
struct ScheduleSettings {
    CheckInterval interval;
    CheckReaction reaction = CheckReaction::Standard;
    /// Whether Config11 holds one of the two letters. With any other the dialog shows Standard, and no timer
    /// starts.
    bool isReactionSet = true;
    bool autoRestore = false;
    /// What Auto Restore does with the changed file: into the folder of changed files, else deleted.
    bool movesChanged = true;

    static ScheduleSettings read(const settings::Configuration& configuration);
    /// Stores all of them, the reaction last; Auto Restore is off with Standard checking. False, and told,
    /// where a key cannot be written.
    bool write(settings::Configuration& configuration) const;

    bool startsTimer() const noexcept { return isReactionSet && interval.total().count() > 0; }
    // Which fields of the dialog can be used.
    bool canAutoRestore() const noexcept { return reaction == CheckReaction::Continuous; }
    bool canChooseChanged() const noexcept { return canAutoRestore() && autoRestore; }
};

}  // namespace corvalence::schedule
