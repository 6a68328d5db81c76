#pragma once

#include "platform/process.h"
#include "schedule/mail_thread.h"

namespace corvalence::cli {

/// A mail is waited for until a signal comes.
class UntilCancelled : public schedule::MailWaiting {
  public:
    explicit UntilCancelled(const platform::Process& process) : process_(process) {}
    bool goOn() override { return !process_.cancelRequested(); }

  private:
    const platform::Process& process_;
};

}  // namespace corvalence::cli
