#include "platform/line_reader.h"

#include <algorithm>
#include <cstring>

namespace corvalence::platform {

namespace {
constexpr std::size_t kBlock = 256 * 1024;
}

LineReader::LineReader(File& file, std::size_t limit, std::uint64_t start)
    : file_(file), limit_(limit), buffer_(std::max(kBlock, limit * 2)), offset_(start) {}

bool LineReader::fill() {
    if (begin_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    file_.seek(offset_ + end_);
    const std::size_t count = file_.read(buffer_.bytes().subspan(end_));
    end_ += count;
    return count > 0;
}

bool LineReader::next(std::string_view& line) {
    std::size_t searched = 0;
    for (;;) {
        const std::size_t available = std::min(end_ - begin_, limit_);
        const std::uint8_t* start = buffer_.data() + begin_;
        const void* feed = std::memchr(start + searched, '\n', available - searched);
        std::size_t length = 0;
        if (feed != nullptr) {
            length = static_cast<std::size_t>(static_cast<const std::uint8_t*>(feed) - start) + 1;
        } else if (available == limit_) {
            length = limit_;
        } else {
            searched = available;
            if (fill()) continue;
            if (available == 0) return false;
            length = available;
        }
        line = base::textOf({buffer_.data() + begin_, length});
        begin_ += length;
        offset_ += length;
        return true;
    }
}

}  // namespace corvalence::platform
