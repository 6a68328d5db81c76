#pragma once

#include <functional>

#include "schedule/check_worker.h"
#include "schedule/timers.h"

namespace corvalence::schedule {

/// What becomes of a File Contents database at a tick of Standard checking: the check with its prompts.
using PromptedCheck = std::function<void(const std::string& database)>;

/// Visits the databases of the schedule, from top to bottom. `goesOn` is asked before each; a check that the
/// user cancels does not end the round. The list's failures are told to the user. `prompted` may be empty
/// where nobody can be asked: the worker checks files then as well.
void visitSchedule(const WorkContext& context, Timer tick, const PromptedCheck& prompted,
                   const std::function<bool()>& goesOn);

}  // namespace corvalence::schedule
