#pragma once

#include <cstdint>
#include <string_view>

#include "base/page_buffer.h"
#include "platform/file_system.h"

namespace corvalence::platform {

/// Reads the lines of an open file in large blocks. It sets the file's position before every block, so that
/// others may read or write the file between two lines.
class LineReader {
  public:
    /// Begins at offset `start`. Lines longer than `limit` bytes, their end included, come in pieces of that
    /// length.
    explicit LineReader(File& file, std::size_t limit = 600, std::uint64_t start = 0);

    /// The next line with its line feed (the last may lack it); false at the end. The view holds until the
    /// next call. Bytes are taken as they come, zeros included.
    bool next(std::string_view& line);

    /// Offset in the file of the first byte behind the last line given.
    std::uint64_t offset() const noexcept { return offset_; }

  private:
    bool fill();

    File& file_;
    std::size_t limit_;
    base::PageBuffer buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::uint64_t offset_;
};

}  // namespace corvalence::platform
