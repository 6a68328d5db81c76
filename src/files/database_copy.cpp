#include "files/database_copy.h"

#include "base/hex_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::files {

DatabaseChanged::DatabaseChanged(const std::string& path)
    : std::runtime_error(path + " database file has been changed and cannot be checked!") {}

DatabaseCopy::DatabaseCopy(store::Vault& vault, const store::OpenDatabaseContext& context)
    : copy_(vault.working.createPlain(context.path(), crypto::kDatabaseCopySuffix)),
      end_(0),
      width_(crypto::digestKind(context.digest()).width) {
    crypto::Md5 md5;
    crypto::unsealFile(vault.platform.files, context.path(), copy_.file(), vault.session.key,
                       crypto::PathIV(context.path()), crypto::kUnsealDatabase, &md5);
    if (base::hexText(md5.finish()) != context.record.fileDigest) throw DatabaseChanged(context.path());
    end_ = copy_.file().size();
}

RecordReader DatabaseCopy::records() {
    return RecordReader(copy_.file(), end_, width_);
}

}  // namespace corvalence::files
