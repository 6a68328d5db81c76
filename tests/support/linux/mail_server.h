#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "child_process.h"
#include "temp_folder.h"

namespace corvalence::test {

/// A mail server on the loopback as a process of its own, with the options of mail_server.py.
class MailServerProcess {
  public:
    explicit MailServerProcess(std::vector<std::string> options = {});

    /// "smtp://localhost:PORT".
    std::string url(const std::string& scheme = "smtp") const { return scheme + "://localhost:" + port_; }
    /// Certificate that its own is to be verified by.
    std::string certificate() const { return folder_ / "cert.pem"; }
    /// Whether it hangs at the stage that it was told.
    bool hangs() const { return folder_.has("hangs"); }
    bool hasMail() const { return folder_.has("mail.json"); }
    /// The message that came last: envelope, headers, parts.
    nlohmann::json mail() const { return nlohmann::json::parse(folder_.read("mail.json")); }

  private:
    TempFolder folder_;
    std::vector<std::string> options_;
    ChildProcess process_;
    std::string port_;
};

/// The bytes of a part of the message.
std::string partBytes(const nlohmann::json& mail, std::size_t part);

}  // namespace corvalence::test
