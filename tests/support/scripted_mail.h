#pragma once

#include <functional>
#include <optional>

#include "platform/mail.h"

namespace corvalence::test {

/// Mail that keeps what it is given, and answers as told.
class ScriptedMail : public platform::Mail {
  public:
    std::function<platform::MailResult(std::stop_token)> answer = [](std::stop_token) {
        return platform::MailResult{};
    };
    std::optional<platform::MailMessage> message;
    platform::MailServer server;

    platform::MailResult send(const platform::MailMessage& given, const platform::MailServer& by,
                              std::stop_token stop) override {
        message = given;
        server = by;
        return answer(stop);
    }
};

}  // namespace corvalence::test
