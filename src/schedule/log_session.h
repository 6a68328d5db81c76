#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "crypto/secret_text.h"
#include "schedule/log_view.h"
#include "store/vault.h"

namespace corvalence::schedule {

/// A log that is being shown: which password opens it, and whether its long values are shown whole, is asked
/// of the user on the way.
class LogSession {
  public:
    /// The password that the log was sealed with; nothing where the user goes back on it.
    using AskPassword = std::function<std::optional<crypto::SecretText>()>;

    LogSession(const store::Vault& vault, std::string path, bool isDark, AskPassword askPassword)
        : vault_(vault), path_(std::move(path)), isDark_(isDark), askPassword_(std::move(askPassword)) {}

    /// Goes through the log, as often as the answers ask for. Throws base::FileFailure; nothing is shown
    /// then.
    void load();
    /// Lets go of the file, which others may want to replace.
    void close() noexcept { view_.reset(); }

    /// Null while nothing is loaded.
    const LogView* view() const noexcept { return view_.get(); }
    const std::string& path() const noexcept { return path_; }
    /// The user ended the going through: the log goes on behind the rows.
    bool isCut() const noexcept { return isCut_; }

  private:
    void open();

    const store::Vault& vault_;
    std::string path_;
    bool isDark_;
    AskPassword askPassword_;
    std::unique_ptr<crypto::SessionKey> alternative_;
    bool isWhole_ = false;  // long values are
    bool isCut_ = false;
    std::unique_ptr<LogView> view_;
};

}  // namespace corvalence::schedule
