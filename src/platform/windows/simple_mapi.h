#pragma once

#include <string>

#include "platform/mail.h"

namespace corvalence::platform::windows_system {

/// Mail through the mail program of the desktop, by its simple interface. Texts go out in the machine's code
/// page, in which a character that it lacks becomes a question mark. The mail program knows its own server
/// and cannot be stopped.
class SimpleMapi : public Mail {
  public:
    /// MAPI32.DLL in the system's own folder.
    SimpleMapi();
    /// The same interface in another library, by its path.
    explicit SimpleMapi(const std::string& library);

    MailResult send(const MailMessage& message, const MailServer& server, std::stop_token stop) override;

  private:
    std::wstring library_;
};

}  // namespace corvalence::platform::windows_system
