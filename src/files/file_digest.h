#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/page_buffer.h"
#include "crypto/digest_code.h"
#include "files/byte_progress.h"
#include "platform/file_system.h"

namespace corvalence::files {

struct DigestedFile {
    std::string digest;
    std::uint64_t bytes = 0;
};

/// Digests files by the algorithm of a DigestCode, one pass each, in large blocks; asks for Cancel before
/// every block.
class FileDigester {
  public:
    explicit FileDigester(crypto::DigestCode code);

    using Sink = std::function<void(base::ByteView)>;

    /// Digests an open file from its position and hands its bytes on to `sink` in the same pass. Nothing
    /// where the user cancelled. Throws base::FileFailure where the file cannot be read; a read error is
    /// never taken for its end.
    std::optional<DigestedFile> digest(platform::File& file, ByteProgress& progress, const Sink& sink = {});

  private:
    crypto::DigestCode code_;
    base::PageBuffer block_;
};

}  // namespace corvalence::files
