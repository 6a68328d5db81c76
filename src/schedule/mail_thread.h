#pragma once

#include <memory>
#include <thread>

#include "platform/clock.h"
#include "platform/mail.h"

namespace corvalence::schedule {

/// What goes on while a mail is waited for.
class MailWaiting {
  public:
    virtual ~MailWaiting() = default;

    /// Asked about twenty times a second on the waiting thread, where a window is painted. False ends the
    /// wait and the sending.
    virtual bool goOn() = 0;
};

/// Sends mails one at a time, each in a thread that owns all it needs: a mail program that hangs holds up
/// neither a check nor the end of the program.
class MailThread {
  public:
    enum class Until { TimeIsOver, MailIsDone };

    explicit MailThread(std::shared_ptr<platform::Mail> mail) : mail_(std::move(mail)) {}
    /// Stops a mail that is still under way, as sendAndWait() does.
    ~MailThread();
    MailThread(const MailThread&) = delete;
    MailThread& operator=(const MailThread&) = delete;

    /// Starts the sending and waits as long as the server's limit: to its end, or only until the mail is
    /// done. One that is not done then is stopped; a mail program that cannot be is left to itself, and no
    /// other mail goes out before it has come back. Never throws for a mail that does not go out.
    platform::MailResult sendAndWait(platform::MailMessage message, platform::MailServer server, Until until,
                                     platform::Clock& clock, MailWaiting& waiting);

  private:
    struct Job;

    bool isUnderWay() const;
    void end() noexcept;

    std::shared_ptr<platform::Mail> mail_;
    std::shared_ptr<Job> job_;  // the one that is under way, or was left to itself
    std::thread thread_;
};

}  // namespace corvalence::schedule
