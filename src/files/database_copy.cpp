#include "files/database_copy.h"

#include "base/hex_text.h"
#include "base/record_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::files {

namespace {
// Between the text and what is appended: a stale tail must not run into the first appended line.
constexpr std::string_view kDivider = "\r\n";
}  // namespace

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

void DatabaseCopy::append(const std::string& line) {
    if (appended_ == 0) {
        copy_.file().seek(end_);
        copy_.file().write(base::bytesOf(kDivider));
    } else {
        copy_.file().seek(end_ + kDivider.size() + appended_);
    }
    copy_.file().write(base::bytesOf(line));
    appended_ += line.size();
}

void DatabaseCopy::writeAppended(crypto::SealWriter& writer) {
    readAppended(0, [&](std::string_view line) { writer.write(base::bytesOf(line)); });
}

void DatabaseCopy::readAppended(std::uint64_t first,
                                const std::function<void(std::string_view line)>& visit) {
    if (first >= appended_) return;
    // A write that failed may have left a part of a line behind them.
    const std::uint64_t end = end_ + kDivider.size() + appended_;
    platform::LineReader reader(copy_.file(), base::kLineLimit, end_ + kDivider.size() + first);
    for (std::string_view line; reader.offset() < end && reader.next(line);)
        visit(line);
}

RecordReader DatabaseCopy::records() {
    return RecordReader(copy_.file(), end_, width_);
}

}  // namespace corvalence::files
