#pragma once

#include <string>

namespace corvalence::platform::linux_system {

/// User and password of a mail server; the password is zeroed when it goes.
class MailLogin {
  public:
    /// From the first two lines of a file that nobody but its owner can read or write, who is this user or
    /// root. Throws base::FileFailure where it cannot be read, std::runtime_error where it is not fit.
    explicit MailLogin(const std::string& path);
    ~MailLogin();
    MailLogin(const MailLogin&) = delete;
    MailLogin& operator=(const MailLogin&) = delete;

    const std::string& user() const noexcept { return user_; }
    const std::string& password() const noexcept { return password_; }

  private:
    std::string user_;
    std::string password_;
};

}  // namespace corvalence::platform::linux_system
