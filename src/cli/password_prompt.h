#pragma once

#include "cli/context.h"
#include "core/password_stage.h"

namespace corvalence::cli {

/// Gets the password from the terminal, from --password-file or from standard input. A refused password is
/// asked for again on a terminal only.
class PasswordPrompt : public core::PasswordDialog {
  public:
    explicit PasswordPrompt(Context& context) : context_(context) {}

    /// Throws CommandEnd where the password file cannot be opened.
    std::optional<crypto::SecretText> show(bool choosing, bool again) override;

  private:
    bool asksOnTerminal();
    std::optional<crypto::SecretText> ask(bool choosing);
    std::optional<crypto::SecretText> readSecret(const std::string& prompt);
    std::optional<crypto::SecretText> readFirstLine();

    Context& context_;
};

}  // namespace corvalence::cli
