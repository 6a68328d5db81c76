#include "files/record_reader.h"

#include "base/record_text.h"
#include "files/file_record.h"

namespace corvalence::files {

RecordReader::RecordReader(platform::File& file, std::uint64_t end, std::size_t width)
    : lines_(file, base::kLineLimit), end_(end), width_(width) {}

bool RecordReader::next(std::string_view& line) {
    if (offset_ >= end_ || !lines_.next(line)) return false;
    // A record is longer than a stale tail, so the test costs nothing on the way.
    if (base::isStaleTail(end_ - offset_) && !FileRecord::parse(line, width_)) return false;
    offset_ = lines_.offset();
    return true;
}

}  // namespace corvalence::files
