#include "store/database_digest.h"

#include <algorithm>

#include "base/hex_text.h"
#include "base/page_buffer.h"
#include "crypto/md5.h"
#include "platform/file_copy.h"

namespace corvalence::store {

namespace {

/// The part of the progress bar that a digest covers, moved in steps of whole blocks.
std::uint32_t barPosition(std::uint64_t done, std::uint64_t size) noexcept {
    return size == 0 ? platform::Progress::kSteps
                     : static_cast<std::uint32_t>(static_cast<double>(done) / static_cast<double>(size) *
                                                  platform::Progress::kSteps);
}

}  // namespace

std::string digestFile(platform::FileSystem& files, const std::string& path, platform::Progress* progress) {
    const auto file = files.openShared(path);
    const std::uint64_t size = file->size();
    base::PageBuffer block(platform::kBlockSize);
    crypto::Md5 md5;
    std::uint64_t done = 0;
    while (const std::size_t count = file->read(block.bytes())) {
        md5.update(block.bytes().first(count));
        done += count;
        if (progress == nullptr) continue;
        if (progress->cancelled()) return {};
        progress->bar(barPosition(std::min(done, size), size));
    }
    return base::hexText(md5.finish());
}

}  // namespace corvalence::store
