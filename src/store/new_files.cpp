#include "store/new_files.h"

#include "base/hex_text.h"
#include "crypto/md5.h"
#include "store/backup_database.h"

namespace corvalence::store {

namespace {
constexpr std::string_view kLineEnd = "\r\n";
}  // namespace

struct NewFiles::NewFile {
    NewFile(Vault& vault, const std::string& path)
        : temporary(vault.working.createDatabase(path)),
          writer(temporary.file(), vault.session.key, crypto::PathIV(path), &digest) {}

    crypto::TemporaryFile temporary;
    crypto::Md5 digest;
    crypto::SealWriter writer;
};

NewFiles::NewFiles(Vault& vault, const std::vector<std::string>& paths) : vault_(vault) {
    for (const std::string& path : paths)
        files_.push_back(std::make_unique<NewFile>(vault, path));
}

NewFiles::~NewFiles() = default;

void NewFiles::write(std::size_t file, std::string_view line) {
    crypto::SealWriter& writer = files_[file]->writer;
    writer.write(base::bytesOf(line));
    writer.write(base::bytesOf(kLineEnd));
}

void NewFiles::finish() {
    for (const auto& file : files_) {
        file->writer.finish();
        file->temporary.close();
        records_.push_back({file->temporary.path(), base::hexText(file->digest.finish())});
    }
}

void NewFiles::backUpAndKeep() {
    try {
        for (const SealedFileRecord& record : records_)
            writeBackupDatabase(vault_, record.path);
    } catch (const base::FileFailure&) {
        for (const auto& file : files_)
            file->temporary.abandon();
        throw;
    }
    for (const auto& file : files_)
        file->temporary.release();
}

}  // namespace corvalence::store
