#pragma once

#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/mail.h"

namespace corvalence::platform::linux_system {

/// Mail through a server by SMTP (RFC 5321). The server's certificate is always verified, and a password is
/// sent under TLS only. The program must ignore SIGPIPE.
class SmtpMail : public Mail {
  public:
    SmtpMail(FileSystem& files, Clock& clock);
    ~SmtpMail() override;
    SmtpMail(const SmtpMail&) = delete;
    SmtpMail& operator=(const SmtpMail&) = delete;

    MailResult send(const MailMessage& message, const MailServer& server, std::stop_token stop) override;

  private:
    FileSystem& files_;
    Clock& clock_;
    bool isUsable_;  // the library could be started
};

}  // namespace corvalence::platform::linux_system
