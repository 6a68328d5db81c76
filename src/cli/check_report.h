#pragma once

#include <memory>

#include "cli/context.h"
#include "files/check.h"

namespace corvalence::cli {

/// Writes what a check finds to standard output as it is found.
class CheckReport : public files::CheckObserver {
  public:
    virtual void begin(const store::OpenDatabaseContext& database) = 0;
    virtual void finish(const files::CheckSummary& summary) = 0;
};

/// `alreadyShown`: the user sees each file on the same terminal while he is asked about it.
std::unique_ptr<CheckReport> makeCheckText(Context& context, bool alreadyShown);
std::unique_ptr<CheckReport> makeCheckJson(Context& context);

}  // namespace corvalence::cli
