#pragma once

#include <optional>
#include <string_view>

#include "base/page_buffer.h"
#include "crypto/sealed_stream.h"
#include "crypto/secret_text.h"

namespace corvalence::schedule {

/// Reads the lines of a sealed log one after the other, by rule B, whatever the size of the log. Bytes behind
/// the last whole block are left out.
class LogLines {
  public:
    /// Longest line; a longer one comes in pieces of this length.
    static constexpr std::size_t kLongestLine = 1'000'000;

    /// `file` is read from `start` on, an offset in its text at which a line begins. All three outlive this.
    LogLines(platform::File& file, const crypto::SessionKey& key, const crypto::ChainValue& chain,
             std::uint64_t start = 0);
    ~LogLines();
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    /// The next line without its end; false behind the last. The view holds until the next call. Throws
    /// base::FileFailure.
    bool next(std::string_view& line);
    /// Offset in the text of the first byte behind the line given last.
    std::uint64_t offset() const noexcept { return offset_; }

  private:
    bool fill();

    std::optional<crypto::UnsealReader> reader_;
    base::PageBuffer buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::uint64_t offset_;
    crypto::SecretText line_;
};

}  // namespace corvalence::schedule
