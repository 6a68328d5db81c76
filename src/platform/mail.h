#pragma once

#include <chrono>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace corvalence::platform {

/// A message to one recipient. All texts are UTF-8.
struct MailMessage {
    std::string recipient;
    std::string subject;
    std::string body;  // lines end in LF or CR LF
    /// File that goes with the message; empty for none. Read during send().
    std::string attachmentPath;
    /// Name that the recipient sees of it.
    std::string attachmentName;
};

/// How the message gets out, where the system has no mail program of its own that knows.
struct MailServer {
    /// "smtp://HOST", "smtps://HOST", with ":PORT" where it is not the usual one.
    std::string url;
    /// Address that the message comes from.
    std::string sender;
    /// File with the user's name in its first line and the password in its second; empty: no login.
    std::string loginFile;
    /// File with the certificates (PEM) that vouch for the server's; empty: those of the system.
    std::string authoritiesFile;
    /// Nothing is sent to a server that does not speak TLS (RFC 3207, RFC 8314). Otherwise TLS is used where
    /// the server offers it.
    bool requiresTls = true;
    /// The sending is given up after this time.
    std::chrono::milliseconds limit = std::chrono::minutes(1);
};

struct MailResult {
    enum class Outcome {
        Accepted,     // handed to the system's mail program or server
        NoTransport,  // this machine has no means of sending mail
        Refused,      // the mail program or server would not have it, or could not be reached
        Cancelled     // stopped from outside before it was accepted
    };
    Outcome outcome = Outcome::Accepted;
    /// What went wrong, in one line for a person; empty for Accepted. May hold what a server answered,
    /// without its control characters.
    std::string reason;
};

class Mail {
  public:
    virtual ~Mail() = default;

    /// Sends one message under the name "Corvalence" and waits until it is accepted or not. A back end that
    /// speaks to a server gives up within about two seconds of `stop`; a mail program may take as long as it
    /// likes. May be called from a thread of its own, one call at a time.
    virtual MailResult send(const MailMessage& message, const MailServer& server, std::stop_token stop) = 0;
};

/// What is wrong with the address of a sender or recipient: anything but "NAME@DOMAIN" in printable ASCII
/// could be taken for a second recipient or for a command to the server.
std::optional<std::string> findAddressFault(std::string_view address);

}  // namespace corvalence::platform
