#pragma once

#include <vector>

#include "store/backup_pair.h"
#include "store/reseal_target.h"
#include "store/vault.h"

namespace corvalence::files {

/// What a change of the password has to seal anew of a database's pair: the list, and the container where it
/// holds sealed stretches. Plain stretches are copied, and so is a stretch whose lengths do not fit one
/// another; a container that is too short stays so. Nothing where there is no list. Throws base::FileFailure
/// (InvalidFile where the list is damaged).
std::vector<store::ResealTarget> resealTargets(store::Vault& vault, const store::BackupPair& pair);

}  // namespace corvalence::files
