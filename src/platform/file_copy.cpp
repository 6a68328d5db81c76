#include "platform/file_copy.h"

#include <algorithm>

#include "base/page_buffer.h"

namespace corvalence::platform {

namespace {

template <typename GoesOn>
bool copyBlocks(File& from, File& to, std::uint64_t length, GoesOn&& goesOn) {
    base::PageBuffer buffer(static_cast<std::size_t>(std::min<std::uint64_t>(length, kBlockSize)));
    while (length > 0) {
        if (!goesOn()) return false;
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(length, buffer.size()));
        const std::size_t count = from.read(buffer.bytes().first(wanted));
        if (count == 0) throw base::FileFailure(base::Cause::EndOfFile, 0, from.path());
        to.write(buffer.bytes().first(count));
        length -= count;
    }
    return true;
}

}  // namespace

void copyBytes(File& from, File& to, std::uint64_t length) {
    copyBlocks(from, to, length, [] { return true; });
}

bool copyBytes(File& from, File& to, std::uint64_t length, Progress& progress) {
    return copyBlocks(from, to, length, [&] { return !progress.cancelled(); });
}

void removeQuietly(FileSystem& files, const std::string& path) noexcept {
    try {
        files.remove(path);
    } catch (const base::FileFailure&) {
        // The caller is already leaving with a failure of its own, and a leftover is found at the next start.
    }
}

}  // namespace corvalence::platform
