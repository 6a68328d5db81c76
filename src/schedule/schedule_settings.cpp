#include "schedule/schedule_settings.h"

#include <array>
#include <charconv>
#include <utility>

namespace corvalence::schedule {

namespace {

namespace key = settings::key;

constexpr int kLastHour = 24;
constexpr int kLastOfSixty = 59;

std::string twoDigits(std::int64_t value) {
    return (value < 10 ? "0" : "") + std::to_string(value);
}

bool isBetween(int value, int highest) noexcept {
    return value >= 0 && value <= highest;
}

/// A number of one or two digits and nothing else.
std::optional<int> shortNumber(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isNumber =
        error == std::errc() && end == text.data() + text.size() && text.size() <= 2 && text.front() != '-';
    return isNumber ? std::optional(value) : std::nullopt;
}

}  // namespace

bool CheckInterval::isAllowed() const noexcept {
    return isBetween(hours, kLastHour) && isBetween(minutes, kLastOfSixty) &&
           isBetween(seconds, kLastOfSixty);
}

std::chrono::seconds CheckInterval::total() const noexcept {
    return std::chrono::hours(hours) + std::chrono::minutes(minutes) + std::chrono::seconds(seconds);
}

std::string CheckInterval::text() const {
    return countdownText(total());
}

std::optional<CheckInterval> CheckInterval::parse(std::string_view text) {
    const std::size_t first = text.find(':');
    const std::size_t second = first == std::string_view::npos ? first : text.find(':', first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const auto hours = shortNumber(text.substr(0, first));
    const auto minutes = shortNumber(text.substr(first + 1, second - first - 1));
    const auto seconds = shortNumber(text.substr(second + 1));
    if (!hours || !minutes || !seconds) return std::nullopt;
    const CheckInterval interval{*hours, *minutes, *seconds};
    return interval.isAllowed() ? std::optional(interval) : std::nullopt;
}

std::string countdownText(std::chrono::seconds left) {
    const std::int64_t seconds = left.count();
    return twoDigits(seconds / 3600) + ":" + twoDigits(seconds / 60 % 60) + ":" + twoDigits(seconds % 60);
}

ScheduleSettings ScheduleSettings::read(const settings::Configuration& configuration) {
    ScheduleSettings settings;
    settings.interval = {configuration.number(key::kScheduleHours),
                         configuration.number(key::kScheduleMinutes),
                         configuration.number(key::kScheduleSeconds)};
    const std::string letter = configuration.text(key::kScheduleReaction);
    settings.reaction = letter == "N" ? CheckReaction::Continuous : CheckReaction::Standard;
    settings.isReactionSet = letter == "N" || letter == "P";
    settings.autoRestore = configuration.isOn(key::kAutoRestore);
    settings.movesChanged = configuration.isOn(key::kAutoRestoreMoves);
    return settings;
}

bool ScheduleSettings::write(settings::Configuration& configuration) const {
    const std::array<std::pair<std::string_view, std::string>, 6> texts = {{
        {key::kScheduleHours, std::to_string(interval.hours)},
        {key::kScheduleMinutes, std::to_string(interval.minutes)},
        {key::kScheduleSeconds, std::to_string(interval.seconds)},
        {key::kAutoRestore, autoRestore && canAutoRestore() ? "1" : "0"},
        {key::kAutoRestoreMoves, movesChanged ? "1" : "0"},
        {key::kScheduleReaction, reaction == CheckReaction::Standard ? "P" : "N"},
    }};
    bool isWritten = true;
    for (const auto& [name, text] : texts)
        isWritten = configuration.write(name, text) && isWritten;
    return isWritten;
}

}  // namespace corvalence::schedule
