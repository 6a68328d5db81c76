#pragma once

#include "cli/commands.h"
#include "components/complete_system.h"
#include "core/start.h"

namespace corvalence::cli {

ExitCode createSystem(Context& context, core::Run& run, const store::CreationRequest& request,
                      const CreateArguments& arguments);

/// Checks the components that the arguments name, or all.
ExitCode checkSystem(Context& context, core::Run& run, const store::OpenDatabaseContext& database,
                     const CheckArguments& arguments);

}  // namespace corvalence::cli
