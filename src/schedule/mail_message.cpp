#include "schedule/mail_message.h"

#include "crypto/sealed_stream.h"
#include "schedule/log_files.h"

namespace corvalence::schedule {

namespace {

namespace key = settings::key;
using Outcome = platform::MailResult::Outcome;

constexpr std::string_view kSubject = "Corvalence Checking Log";
constexpr std::size_t kBodyLimit = 999'999;
constexpr std::string_view kTooLong =
    "The log file is larger than 1MB - It is recommended that you check the master log.\n\nIf you need to "
    "send "
    "log files larger than 1MB change the configuration so the log file is sent as an encrypted attachment.";

constexpr std::string_view kAttachmentSuffix = "123456789zmn";

platform::MailMessage messageWith(const settings::Configuration& configuration, std::string_view body) {
    return {configuration.text(key::kEmailRecipient), std::string(kSubject), std::string(body), {}, {}};
}

crypto::TemporaryFile sealedAttachment(store::Vault& vault, std::string_view text) {
    auto file = vault.working.createSealed(LogFiles(vault).path(LogKind::Session), kAttachmentSuffix);
    crypto::SealWriter writer(file.file(), vault.session.key, vault.session.chains.LogIV);
    writer.write(base::bytesOf(text));
    writer.finish();
    file.close();  // a mail program opens it by its path
    return file;
}

}  // namespace

platform::MailServer mailServer(const settings::Configuration& configuration) {
    return {
        configuration.text(key::kMailServer), configuration.text(key::kMailSender),
        configuration.text(key::kMailLogin),  configuration.text(key::kMailAuthorities),
        configuration.isOn(key::kMailTls),    std::chrono::minutes(configuration.number(key::kEmailTimeout))};
}

platform::MailMessage plainMail(const settings::Configuration& configuration, std::string_view text) {
    return messageWith(configuration, text.size() < kBodyLimit ? text : kTooLong);
}

platform::MailResult mailCheck(store::Vault& vault, MailThread& thread, MailPlan plan, std::string_view text,
                               MailWaiting& waiting) {
    const auto send = [&](platform::MailMessage message) {
        return thread.sendAndWait(std::move(message), mailServer(vault.configuration),
                                  MailThread::Until::TimeIsOver, vault.platform.clock, waiting);
    };
    if (!isMailed(plan)) return {};
    if (plan == MailPlan::Plain) return send(plainMail(vault.configuration, text));
    try {
        const crypto::TemporaryFile file = sealedAttachment(vault, text);
        auto message = messageWith(vault.configuration, "Corvalence Checking Log Attached.");
        message.attachmentPath = file.path();
        message.attachmentName = kSubject;
        return send(std::move(message));
    } catch (const base::FileFailure& failure) {
        return {Outcome::Refused, failure.what()};
    }
}

}  // namespace corvalence::schedule
