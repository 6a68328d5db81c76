#pragma once

#include "crypto/session.h"
#include "crypto/working_files.h"
#include "platform/platform.h"
#include "settings/configuration.h"

namespace corvalence::store {

/// What every operation on sealed data needs: the machine, the settings, the session's key and the maker of
/// temporary files. References only; whoever builds one keeps the parts alive.
struct Vault {
    platform::Platform& platform;
    settings::Configuration& configuration;
    crypto::WorkingFiles& working;
    const crypto::Session& session;
};

}  // namespace corvalence::store
