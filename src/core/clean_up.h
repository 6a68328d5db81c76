#pragma once

#include "store/vault.h"

namespace corvalence::core {

/// What a window's run takes away when it ends: the reports of the last checks, sealed or plain, of all five
/// kinds, and plain copies of schedule and logs that stand under their working names and that nobody holds.
/// What is missing, or cannot be removed, is passed over without a word: nobody is there any more to read it,
/// and the journal has the next start clear up what this run made.
void cleanUp(const store::Vault& vault);

}  // namespace corvalence::core
