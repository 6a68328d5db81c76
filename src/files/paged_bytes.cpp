#include "files/paged_bytes.h"

#include <algorithm>

#include "platform/file_copy.h"

namespace corvalence::files {

namespace {

constexpr std::size_t kPage = 64 * 1024;

/// Files that the kernel makes up while they are read say that they are empty.
std::uint64_t readableSize(platform::File& file) {
    std::uint64_t size = file.size();
    if (size > 0) return size;
    base::PageBuffer block(kPage);
    while (const std::size_t count = file.read(block.bytes()))
        size += count;
    return size;
}

std::uint64_t plainSize(platform::File& container, const BackupIndexEntry& entry) {
    const auto size = entry.plainLength();
    if (!size) throw base::FileFailure(base::Cause::InvalidFile, 0, container.path());
    if (entry.offset + entry.storedLength > container.size())
        throw base::FileFailure(base::Cause::EndOfFile, 0, container.path());
    return *size;
}

}  // namespace

PagedBytes::PagedBytes(std::unique_ptr<platform::File> file)
    : file_(std::move(file)), size_(readableSize(*file_)) {}

PagedBytes::PagedBytes(std::unique_ptr<platform::File> container, const BackupIndexEntry& entry,
                       const crypto::SessionKey& key, const crypto::ChainValue& chain)
    : file_(std::move(container)), begin_(entry.offset), size_(plainSize(*file_, entry)) {
    if (entry.sealed) unsealer_.emplace(*file_, entry.offset, entry.storedLength, key, chain);
}

std::size_t PagedBytes::read(std::uint64_t position, base::ByteSpan bytes) {
    if (position >= size_) return 0;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), size_ - position));
    // A sealed stretch is read by whole blocks, so what follows its end comes along.
    if (unsealer_) return std::min(wanted, unsealer_->read(position, bytes));
    file_->seek(begin_ + position);
    return file_->read(bytes.first(wanted));
}

base::ByteView PagedBytes::peek(std::uint64_t position, std::size_t width) {
    const std::uint64_t pageBegin = position / kPage * kPage;
    if (pageBegin != pageBegin_) {
        if (!page_) page_ = std::make_unique<ContentBuffer>(kPage);
        pageBegin_ = kNoPage;
        pageSize_ = read(pageBegin, page_->bytes());
        pageBegin_ = pageBegin;
    }
    const base::ByteView page = page_->bytes().first(pageSize_);
    const std::size_t at = std::min(static_cast<std::size_t>(position - pageBegin), pageSize_);
    return page.subspan(at, std::min(width, pageSize_ - at));
}

}  // namespace corvalence::files
