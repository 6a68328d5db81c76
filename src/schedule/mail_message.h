#pragma once

#include <string_view>

#include "schedule/log_block.h"
#include "schedule/mail_thread.h"
#include "store/vault.h"

namespace corvalence::schedule {

/// Server, sender and time limit as the settings have them at this moment.
platform::MailServer mailServer(const settings::Configuration& configuration);

/// To the recipient of the settings, with this text as its body; with a text that points to the log in its
/// place where it has 999,999 bytes or more.
platform::MailMessage plainMail(const settings::Configuration& configuration, std::string_view text);

/// Mails the text of one check, as a plain body or sealed under the key and chain value of the logs, and
/// waits as long as the settings say whether the mail has gone or not. The plain text reaches no disk; the
/// sealed one goes when the wait is over. A mail that does not go out is no failure: the result says why.
platform::MailResult mailCheck(store::Vault& vault, MailThread& thread, MailPlan plan, std::string_view text,
                               MailWaiting& waiting);

}  // namespace corvalence::schedule
