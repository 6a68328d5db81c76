#include "core/password_stage.h"

#include "base/utf8.h"
#include "core/installation.h"
#include "store/database_index.h"

namespace corvalence::core {

namespace {

/// Whether the index has a length that no sealed file has: no key opens it, the right one as little as
/// others.
bool isDamaged(platform::FileSystem& files, const std::string& indexPath) {
    const auto status = files.status(indexPath, platform::Follow::Yes);
    return status && status->size % crypto::CipherContext::kBlockSize != 0;
}

std::string damagedText(const std::string& indexPath) {
    return indexPath +
           " has been damaged: no password opens it.\n\nPut an undamaged copy of the file back. Where there "
           "is none, reset Corvalence: the databases, backups and logs that there are become inaccessible.";
}

}  // namespace

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
    PasswordQuestion question;
    question.reset = [&] { return reset(platform, configuration, working); };
    for (;; question.again = true) {
        const auto status = platform.files.status(indexPath, platform::Follow::Yes);
        question.choosing = status && status->size == 0;
        question.damaged = isDamaged(platform.files, indexPath);
        if (question.damaged) platform.ui.message(platform::Icon::Stop, damagedText(indexPath));
        auto password = dialog.show(question);
        if (!password) return PasswordResult::Left;
        if (isDamaged(platform.files, indexPath)) continue;
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
