#pragma once

#include <string>

namespace corvalence::platform {

/// A message to one recipient. All texts are UTF-8.
struct MailMessage {
    std::string recipient;
    std::string subject;
    std::string body;
    /// File that goes with the message; empty for none. Read during send().
    std::string attachmentPath;
    /// Name that the recipient sees of it.
    std::string attachmentName;
};

struct MailResult {
    enum class Outcome {
        Accepted,     // handed to the system's mail program or server
        NoTransport,  // this machine has no means of sending mail
        Refused       // the mail program or server would not have it
    };
    Outcome outcome = Outcome::Accepted;
    /// What went wrong, in one line for a person; empty for Accepted.
    std::string reason;
};

class Mail {
  public:
    virtual ~Mail() = default;

    /// Sends one message under the name "Corvalence" and waits until it is accepted or not, which may take
    /// as long as the mail program likes. May be called from a thread of its own, one call at a time.
    virtual MailResult send(const MailMessage& message) = 0;
};

}  // namespace corvalence::platform
