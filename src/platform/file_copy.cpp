#include "platform/file_copy.h"

#include <algorithm>

#include "base/page_buffer.h"

namespace corvalence::platform {

void copyBytes(File& from, File& to, std::uint64_t length) {
    base::PageBuffer buffer(static_cast<std::size_t>(std::min<std::uint64_t>(length, kBlockSize)));
    while (length > 0) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(length, buffer.size()));
        const std::size_t count = from.read(buffer.bytes().first(wanted));
        if (count == 0) throw base::FileFailure(base::Cause::EndOfFile, 0, from.path());
        to.write(buffer.bytes().first(count));
        length -= count;
    }
}

void copyWhole(FileSystem& files, const std::string& from, const std::string& to, const std::string& beside) {
    const auto source = files.openShared(from);
    auto copy = files.createNew(beside);
    try {
        copyBytes(*source, *copy, source->size());
        copy->flush();
        copy.reset();
        files.rename(beside, to);
    } catch (...) {
        copy.reset();
        removeQuietly(files, beside);
        throw;
    }
}

void removeQuietly(FileSystem& files, const std::string& path) noexcept {
    try {
        files.remove(path);
    } catch (const base::FileFailure&) {
        // The caller is already leaving with a failure of its own, and a leftover is found at the next start.
    }
}

}  // namespace corvalence::platform
