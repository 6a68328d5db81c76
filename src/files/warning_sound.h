#pragma once

#include "store/vault.h"

namespace corvalence::files {

/// Plays the sound that the settings choose for a difference: one of three, none, or a file of the user's.
void playWarning(const store::Vault& vault);

/// Plays the one of that number: 0 to 2 are the program's own, 3 is silent, 4 is `file`.
void playWarning(platform::Sound& sound, int chosen, const std::string& file);

}  // namespace corvalence::files
