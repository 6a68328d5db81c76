#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "files/criteria_form.h"

namespace corvalence::gui {

/// What a command picks files by.
enum class CriteriaKind { Location, Size, Time, Type, Attributes, Contents, Abilities, Combination };

/// A command that adds or removes files by criteria, as its window shows it.
struct CriteriaCommand {
    CriteriaKind kind;
    bool adds;
    std::string_view title;
    std::string_view topic;  // of the help
};

inline constexpr std::array<CriteriaCommand, 16> kCriteriaCommands = {{
    {CriteriaKind::Location, true, "Add files to the database according to their location.", "addlocation"},
    {CriteriaKind::Size, true, "   Add files of a specific size from the database.", "addsize"},
    {CriteriaKind::Time, true,
     "   Add files to the database according to their creation / modification time.", "addtime"},
    {CriteriaKind::Type, true, "   Add files of a specific type to the database", "addtype"},
    {CriteriaKind::Attributes, true, "Add files to the database according to their attributes.",
     "addattributes"},
    {CriteriaKind::Contents, true, "   Add files to the database according to their contents. ",
     "addcontents"},
    {CriteriaKind::Abilities, true, "Add files according to their abilities / functionality.",
     "addabilities"},
    {CriteriaKind::Combination, true, "   Add files.", "addcombo"},
    {CriteriaKind::Location, false, "Remove files from the database according to their location.",
     "removefiles"},
    {CriteriaKind::Size, false, "Remove files of a specific size from the database.", "removefiles"},
    {CriteriaKind::Time, false, "Remove files according to their creation / modification time.",
     "removefiles"},
    {CriteriaKind::Type, false, "Remove files of a specific type from the database.", "removefiles"},
    {CriteriaKind::Attributes, false, "Remove files according to their attributes.", "removefiles"},
    {CriteriaKind::Contents, false, "Remove files to the database according to their contents. ",
     "removefiles"},
    {CriteriaKind::Abilities, false, "Remove files according to their abilities / functionality.",
     "removefiles"},
    {CriteriaKind::Combination, false, "Remove files.", "removefiles"},
}};

constexpr const CriteriaCommand& criteriaCommand(CriteriaKind kind, bool adds) noexcept {
    return kCriteriaCommands[static_cast<std::size_t>(kind) + (adds ? 0 : kCriteriaCommands.size() / 2)];
}

/// The group of fields of a kind that has but one; nothing for Location and Combination.
constexpr std::optional<files::CriteriaGroup> groupOf(CriteriaKind kind) noexcept {
    if (kind == CriteriaKind::Location || kind == CriteriaKind::Combination) return std::nullopt;
    return static_cast<files::CriteriaGroup>(static_cast<int>(kind) - 1);
}

}  // namespace corvalence::gui
