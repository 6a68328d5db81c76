#include "cli/commands.h"
#include "cli/console_text.h"
#include "cli/session.h"
#include "cli/until_cancelled.h"
#include "schedule/mail_message.h"

namespace corvalence::cli {

namespace {

constexpr std::string_view kText =
    "This is a test of the mails about scheduled checks. It was sent by hand; no check was made.\n";

void tellSent(Context& context, const std::string& recipient, bool isOn) {
    if (context.options.json) {
        context.json.beginObject();
        context.json.text("recipient", recipient);
        context.json.flag("sent", true);
        context.json.flag("enabled", isOn);
        return;
    }
    context.out << "Mail sent to " + shown(recipient) + ".\n" +
                       (isOn ? "" : "Scheduled checks send none: the setting \"email\" is 0.\n");
}

}  // namespace

ExitCode runMailTest(Context& context) {
    using Outcome = platform::MailResult::Outcome;
    requireInstallation(context);
    const settings::Configuration configuration(context.platform.settings, context.ui);
    schedule::MailThread thread(context.mail);
    UntilCancelled waiting(context.platform.process);
    const auto message = schedule::plainMail(configuration, kText);
    if (message.recipient.empty()) throw CommandEnd(ExitCode::Failed, "The settings name no recipient.");
    const auto result =
        thread.sendAndWait(message, schedule::mailServer(configuration),
                           schedule::MailThread::Until::MailIsDone, context.platform.clock, waiting);
    if (result.outcome == Outcome::Cancelled) return ExitCode::Cancelled;
    if (result.outcome != Outcome::Accepted) throw CommandEnd(ExitCode::Failed, result.reason);
    tellSent(context, message.recipient, configuration.isOn(settings::key::kEmailEnabled));
    return ExitCode::Done;
}

}  // namespace corvalence::cli
