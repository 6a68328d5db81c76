#pragma once

#include <cstdint>
#include <string_view>

#include "platform/line_reader.h"

namespace corvalence::files {

/// Reads the lines of an unsealed File Contents database one by one. What the last sealed block leaves behind
/// the last record is no line: pieces of under 16 bytes together at the end that are no record.
class RecordReader {
  public:
    /// `end`: where the text ends; `width`: hexadecimal characters of a digest.
    RecordReader(platform::File& file, std::uint64_t end, std::size_t width);

    /// The next line with its end; false behind the last record. The view holds until the next call.
    bool next(std::string_view& line);
    /// Offset behind the last line given: behind the last record, once next() has said false.
    std::uint64_t offset() const noexcept { return offset_; }

  private:
    platform::LineReader lines_;
    std::uint64_t end_;
    std::uint64_t offset_ = 0;
    std::size_t width_;
};

}  // namespace corvalence::files
