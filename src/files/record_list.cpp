#include "files/record_list.h"

#include <algorithm>
#include <cstring>

#include "base/hex_text.h"
#include "base/number_text.h"
#include "base/record_text.h"
#include "crypto/sealed_file.h"
#include "files/database_copy.h"
#include "platform/file_copy.h"

namespace corvalence::files {

namespace {

constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;

/// The size field of a record, found without taking the whole line apart.
std::uint64_t sizeOfLine(std::string_view line, std::size_t width) noexcept {
    const std::size_t digest = line.find(base::kSeparator);
    if (digest == std::string_view::npos || line.size() <= digest + width + 2) return 0;
    return base::scanWholeUnits(line.substr(digest + width + 2, 20)).value_or(0);
}

}  // namespace

/// The first pass over the plain text, which comes in pieces.
class RecordList::Scan {
  public:
    Scan(RecordList& list, std::size_t pageSize)
        : list_(list), pageSize_(std::max<std::size_t>(pageSize, 1)) {}

    void take(std::string_view text) {
        while (!text.empty()) {
            const std::size_t feed = text.find('\n');
            const std::size_t length = feed == std::string_view::npos ? text.size() : feed + 1;
            if (begun_.empty() && feed != std::string_view::npos) {
                endLine(text.substr(0, length));
            } else {
                begun_.append(text.substr(0, length));
                if (feed != std::string_view::npos) endBegunLine();
            }
            text.remove_prefix(length);
        }
    }

    void finish() {
        if (!begun_.empty()) endBegunLine();
        while (!short_.empty() && base::isStaleTail(offset_ - short_.back())) {
            --list_.count_;
            list_.end_ = short_.back();
            short_.pop_back();
            if (list_.count_ % pageSize_ == 0 && list_.count_ > 0) list_.starts_.pop_back();
        }
    }

  private:
    void endBegunLine() {
        endLine(begun_.view());
        begun_.clear();
    }

    void endLine(std::string_view line) {
        if (list_.count_ % pageSize_ == 0 && list_.count_ > 0) list_.starts_.push_back(offset_);
        // No record is that short: what the last block left behind, if nothing longer follows.
        if (base::isStaleTail(line.size())) {
            short_.push_back(offset_);
        } else {
            short_.clear();
        }
        ++list_.count_;
        list_.totalSize_ += sizeOfLine(line, list_.width_);
        offset_ += line.size();
        list_.end_ = offset_;
    }

    RecordList& list_;
    std::size_t pageSize_;
    std::uint64_t offset_ = 0;
    crypto::SecretText begun_;          // a line that goes on in the next piece
    std::vector<std::uint64_t> short_;  // where lines begin that no record is as short as
};

RecordList::RecordList(const store::Vault& vault, const store::OpenDatabaseContext& context,
                       std::size_t pageSize)
    : vault_(vault), path_(context.path()), width_(crypto::digestKind(context.digest()).width), starts_{0} {
    const auto file = vault.platform.files.openShared(path_);
    sealedSize_ = file->size();
    crypto::Md5 md5;
    crypto::UnsealReader reader(*file, sealedSize_, vault.session.key, crypto::PathIV(path_),
                                crypto::kUnsealDatabase.rule, &md5);
    Scan scan(*this, pageSize);
    ContentBuffer buffer(platform::kBlockSize);
    while (const std::size_t count = reader.read(buffer.bytes()))
        scan.take(base::textOf(buffer.bytes().first(count)));
    if (base::hexText(md5.finish()) != context.record.fileDigest) throw DatabaseChanged(path_);
    scan.finish();
}

std::unique_ptr<platform::File> RecordList::openUnchanged() const {
    auto file = vault_.platform.files.openShared(path_);
    if (file->size() != sealedSize_) throw DatabaseChanged(path_);
    return file;
}

void RecordList::show(std::size_t page) {
    page = std::clamp<std::size_t>(page, 1, pages());
    const std::uint64_t begin = starts_[page - 1];
    const std::uint64_t end = page < pages() ? starts_[page] : end_;
    const std::uint64_t first = begin / kBlock * kBlock;
    const auto sealed = static_cast<std::size_t>((end + kBlock - 1) / kBlock * kBlock - first);
    auto text = std::make_unique<ContentBuffer>(std::max<std::size_t>(sealed, 1));
    const auto file = openUnchanged();
    crypto::RandomUnsealer unsealer(*file, 0, sealedSize_, vault_.session.key, crypto::PathIV(path_));
    unsealer.read(first, text->bytes().first(sealed));
    std::vector<Line> lines;
    const std::string_view all = base::textOf(text->bytes().first(static_cast<std::size_t>(end - first)));
    for (auto at = static_cast<std::size_t>(begin - first); at < all.size();) {
        const std::size_t next = std::min(all.find('\n', at), all.size() - 1) + 1;
        lines.push_back({at, base::withoutLineEnd(all.substr(at, next - at)).size()});
        at = next;
    }
    text_ = std::move(text);
    lines_ = std::move(lines);
    page_ = page;
}

std::string_view RecordList::line(std::size_t row) const noexcept {
    return base::textOf(text_->bytes()).substr(lines_[row].begin, lines_[row].length);
}

std::optional<FileRecord> RecordList::record(std::size_t row) const {
    return FileRecord::parse(line(row), width_);
}

std::string RecordList::key(std::size_t row) const {
    const std::string_view whole = line(row);
    return std::string(whole.substr(0, pathOfLine(whole).size() + 1 + width_));
}

}  // namespace corvalence::files
