#include "crypto/wipe.h"

#include <algorithm>

#include "base/page_buffer.h"

namespace corvalence::crypto {

void overwriteFile(platform::File& file) {
    constexpr std::size_t kBufferSize = 256 * 1024;
    constexpr int kRounds = 4;
    const std::uint64_t size = file.size();
    if (size == 0) return;
    base::PageBuffer pattern(static_cast<std::size_t>(std::min<std::uint64_t>(size, kBufferSize)));
    for (int pass = 0; pass < kRounds * 2; ++pass) {
        std::fill_n(pattern.data(), pattern.size(), static_cast<std::uint8_t>(pass % 2 == 0 ? 0x00 : 0xFF));
        file.seek(0);
        for (std::uint64_t left = size; left > 0;) {
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(left, pattern.size()));
            file.write(pattern.bytes().first(count));
            left -= count;
        }
    }
    // Without this the removal would drop the passes while they are still in the cache.
    file.flush();
}

void wipeFile(platform::FileSystem& files, const std::string& path) {
    auto file = files.openExclusive(path);
    overwriteFile(*file);
    file.reset();
    files.remove(path);
}

}  // namespace corvalence::crypto
