#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "crypto/secret_text.h"
#include "crypto/session.h"
#include "store/vault.h"

namespace corvalence::core {

/// Longest password, in characters; "*" cannot be part of one, since the masked entry takes it for a start
/// anew.
inline constexpr std::size_t kPasswordLimit = 128;

/// Why a text cannot be a password; nothing where it can.
std::optional<std::string> findPasswordFault(std::string_view password);

/// What a dialog is shown for.
struct PasswordQuestion {
    /// There is no database yet, and the password given now is the one of this installation.
    bool choosing = false;
    /// The password given before was refused.
    bool again = false;
    /// No password can be right, which the user was told: all that can be done here is to leave or to reset.
    bool damaged = false;
    /// Begins the installation anew, after asking; false where the user said no. Throws base::FileFailure.
    std::function<bool()> reset = {};
};

class PasswordDialog {
  public:
    virtual ~PasswordDialog() = default;
    /// Nothing where the user leaves.
    virtual std::optional<crypto::SecretText> show(const PasswordQuestion& question) = 0;
};

enum class PasswordResult { Proved, Left, IndexMissing };

/// Asks until a password opens the Database Index or the user leaves. No message explains a refusal, but an
/// index that no password can open is told each time before it asks. `session` is set where it was proved.
/// Throws base::FileFailure for an index that cannot be read.
PasswordResult provePassword(platform::Platform& platform, settings::Configuration& configuration,
                             crypto::WorkingFiles& working, PasswordDialog& dialog,
                             std::unique_ptr<crypto::Session>& session);

}  // namespace corvalence::core
