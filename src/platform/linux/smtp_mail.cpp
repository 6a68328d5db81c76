#include "platform/linux/smtp_mail.h"

#include <curl/curl.h>

#include "platform/linux/smtp_transfer.h"

namespace corvalence::platform::linux_system {

using Outcome = MailResult::Outcome;

SmtpMail::SmtpMail(FileSystem& files, Clock& clock)
    : files_(files), clock_(clock), isUsable_(::curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK) {}

SmtpMail::~SmtpMail() {
    if (isUsable_) ::curl_global_cleanup();
}

MailResult SmtpMail::send(const MailMessage& message, const MailServer& server, std::stop_token stop) {
    if (!isUsable_) return {Outcome::NoTransport, "The mail library cannot be used."};
    if (server.url.empty()) return {Outcome::NoTransport, "No mail server is set."};
    if (server.sender.empty()) return {Outcome::NoTransport, "No sender's address is set."};
    try {
        return SmtpTransfer(files_, message, server, clock_.now()).run(stop);
    } catch (const std::exception& fault) {
        return {Outcome::Refused, fault.what()};
    }
}

}  // namespace corvalence::platform::linux_system
