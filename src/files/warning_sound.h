#pragma once

#include "store/vault.h"

namespace corvalence::files {

/// Plays the sound that the settings choose for a difference: one of three, none, or a file of the user's.
void playWarning(const store::Vault& vault);

}  // namespace corvalence::files
