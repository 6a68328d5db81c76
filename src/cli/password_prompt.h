#pragma once

#include <fstream>

#include "cli/context.h"
#include "core/password_stage.h"

namespace corvalence::cli {

/// Gets the password from the terminal, from --password-file or from standard input. A refused password is
/// asked for again on a terminal only.
class PasswordPrompt : public core::PasswordDialog {
  public:
    explicit PasswordPrompt(Context& context) : context_(context) {}

    /// Throws CommandEnd where the password file cannot be opened.
    std::optional<crypto::SecretText> show(const core::PasswordQuestion& question) override;

    // For the choice of another password.

    bool asksOnTerminal();
    /// The password that was given last.
    std::string_view given() const noexcept { return given_.view(); }
    /// Asked for on the terminal without echo; nothing where the user leaves.
    std::optional<crypto::SecretText> readSecret(const std::string& prompt);
    /// The next line of the password file, or of standard input. Nothing at its end.
    std::optional<crypto::SecretText> readNextLine();

  private:
    std::optional<crypto::SecretText> ask(bool choosing);
    Context& context_;
    std::ifstream file_;  // once it is open
    crypto::SecretText given_;
};

/// The first line of a file that holds a password, or the next of standard input for "-". Nothing where there
/// is none, or a signal came meanwhile. Throws CommandEnd where the file cannot be opened.
std::optional<crypto::SecretText> readPasswordFile(Context& context, const std::string& name);

}  // namespace corvalence::cli
