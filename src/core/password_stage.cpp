#include "core/password_stage.h"

#include "base/utf8.h"
#include "store/database_index.h"

namespace corvalence::core {

std::optional<std::string> findPasswordFault(std::string_view password) {
    if (password.find('*') != std::string_view::npos) return "A password cannot hold the character \"*\".";
    if (base::countCharacters(password) > kPasswordLimit) {
        return "A password has " + std::to_string(kPasswordLimit) + " characters at the most.";
    }
    return std::nullopt;
}

PasswordResult provePassword(platform::Platform& platform, settings::Configuration& configuration,
                             crypto::WorkingFiles& working, PasswordDialog& dialog,
                             std::unique_ptr<crypto::Session>& session) {
    const std::string indexPath =
        configuration.folder(settings::key::kBackupFilesDirectory) + "Database Index";
    for (bool again = false;; again = true) {
        const auto status = platform.files.status(indexPath, platform::Follow::Yes);
        auto password = dialog.show(status && status->size == 0, again);
        if (!password) return PasswordResult::Left;
        auto candidate = std::make_unique<crypto::Session>(password->view());
        password->clear();
        store::Vault vault{platform, configuration, working, *candidate};
        switch (store::DatabaseIndex(vault).provePassword()) {
            case store::PasswordProof::Proved:
                session = std::move(candidate);
                return PasswordResult::Proved;
            case store::PasswordProof::Refused:
                break;
            case store::PasswordProof::IndexMissing:
                platform.ui.message(
                    platform::Icon::Stop,
                    "A vital file required by Corvalence does not exist!\n\nIt is recommended that you "
                    "reinstall Corvalence.\n\nSupport reference code: DBI");
                return PasswordResult::IndexMissing;
        }
    }
}

}  // namespace corvalence::core
