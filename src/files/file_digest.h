#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "crypto/digest_code.h"
#include "files/byte_progress.h"
#include "platform/file_system.h"

namespace corvalence::files {

struct DigestedFile {
    std::string digest;
    std::uint64_t bytes = 0;
    platform::FileStatus status;  // as it was when the file was opened
};

/// Digests files by the algorithm of a DigestCode, one pass each, in large blocks; asks for Cancel before
/// every block.
class FileDigester {
  public:
    FileDigester(platform::FileSystem& files, crypto::DigestCode code);

    using Sink = std::function<void(base::ByteView)>;

    /// Digests the file and hands its bytes on to `sink` in the same pass. Nothing where the user cancelled.
    /// Throws base::FileFailure where the file cannot be opened or read; a read error is never taken for its
    /// end.
    std::optional<DigestedFile> digest(const std::string& path, ByteProgress& progress,
                                       const Sink& sink = {});
    /// The same for a file that is open, from its start.
    std::optional<DigestedFile> digest(platform::File& file, ByteProgress& progress, const Sink& sink = {});

  private:
    platform::FileSystem& files_;
    crypto::DigestCode code_;
    std::vector<std::uint8_t> block_;
};

}  // namespace corvalence::files
