#include "schedule/log_lines.h"

#include <algorithm>

#include "base/record_text.h"
#include "crypto/secure_zero.h"
#include "platform/file_copy.h"

namespace corvalence::schedule {

namespace {

constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;

}  // namespace

LogLines::LogLines(platform::File& file, const crypto::SessionKey& key, const crypto::ChainValue& chain,
                   std::uint64_t start)
    : buffer_(platform::kBlockSize), offset_(start) {
    const std::uint64_t size = file.size() / kBlock * kBlock;
    std::uint64_t first = std::min(start, size) / kBlock * kBlock;
    // A file of one block has an end of its own kind, which the last block of a longer one must not get.
    if (first > 0) first -= kBlock;
    crypto::ChainValue before = chain;
    file.seek(first == 0 ? 0 : first - kBlock);
    if (first > 0 && file.read(before) != kBlock)
        throw base::FileFailure(base::Cause::EndOfFile, 0, file.path());
    reader_.emplace(file, size - first, key, before, crypto::EndRule::shortTail());
    reader_->read(buffer_.bytes().first(static_cast<std::size_t>(std::min(start, size) - first)));
}

LogLines::~LogLines() {
    crypto::secureZero(buffer_.data(), buffer_.size());
}

bool LogLines::fill() {
    begin_ = 0;
    end_ = reader_->read(buffer_.bytes());
    return end_ > 0;
}

bool LogLines::next(std::string_view& line) {
    if (!line_.empty()) line_.clear();
    if (begin_ == end_ && !fill()) return false;
    for (;;) {
        const std::string_view rest(reinterpret_cast<const char*>(buffer_.data()) + begin_, end_ - begin_);
        const std::size_t room = kLongestLine - line_.size();
        const std::size_t feed = rest.substr(0, room).find('\n');
        const bool isEnd = feed != std::string_view::npos || rest.size() >= room;
        const std::size_t count = std::min(feed == std::string_view::npos ? rest.size() : feed + 1, room);
        begin_ += count;
        offset_ += count;
        if (isEnd && line_.empty()) {
            line = base::withoutLineEnd(rest.substr(0, count));
            return true;
        }
        line_.append(rest.substr(0, count));
        if (isEnd || !fill()) break;
    }
    line = base::withoutLineEnd(line_.view());
    return true;
}

}  // namespace corvalence::schedule
