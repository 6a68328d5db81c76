#pragma once

#include <span>
#include <string>
#include <string_view>

#include "world.h"

namespace corvalence::test {

/// What an action says that it came to.
struct Claim {
    bool done = false;
    std::string said;  // everything that was told to the user
};

/// What becomes of the user's files in an action.
enum class Files { Stay, Restored, RestoredAndMoved };

/// A day's work of which any step may be the last one.
struct Scenario {
    std::string_view name;
    /// Config17: "N" for sealed backups, "P" for plain ones.
    std::string_view backups;
    Files files;
    /// What happened before; nothing of it is disturbed.
    void (*prepare)(World&);
    /// Acts on a run that has been started. Throws what the program throws.
    Claim (*act)(World&);
    /// Whether the action has come about as a whole.
    bool (*isDone)(World&);
    /// What else holds after every start, however far the action came; may be null.
    void (*expectHeld)(World&) = nullptr;
};

std::span<const Scenario> scenarios();
const Scenario& scenarioOf(std::string_view name);

/// The password that the world's own one is changed to.
inline constexpr std::string_view kNewPassword = "sesame, open";

/// The content that the files of a prepared world had when they were recorded.
std::string recordedContent(std::string_view name);

/// Makes an installation in an empty world, with the databases "db" of the files "kept", "a" and "b" and
/// "other" of "kept", a checking schedule that names both, and what the scenario wants.
void prepareWorld(World& world, const Scenario& scenario);

}  // namespace corvalence::test
