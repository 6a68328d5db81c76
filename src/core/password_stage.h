#pragma once

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

class PasswordDialog {
  public:
    virtual ~PasswordDialog() = default;
    /// Nothing where the user leaves. `choosing`: there is no database yet, and the password given now is the
    /// one of this installation. `again`: the password given before was refused.
    virtual std::optional<crypto::SecretText> show(bool choosing, bool again) = 0;
};

enum class PasswordResult { Proved, Left, IndexMissing };

/// Asks until a password opens the Database Index or the user leaves. No message explains a refusal.
/// `session` is set where it was proved. Throws base::FileFailure for an index that cannot be read.
PasswordResult provePassword(platform::Platform& platform, settings::Configuration& configuration,
                             crypto::WorkingFiles& working, PasswordDialog& dialog,
                             std::unique_ptr<crypto::Session>& session);

}  // namespace corvalence::core
