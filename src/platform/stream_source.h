#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "base/bytes.h"
#include "base/file_failure.h"

namespace corvalence::platform {

/// A named run of bytes that a file or folder carries beside its content.
struct StreamEntry {
    /// "summary"; on Linux with the attribute's class in front: "user.note". Never empty.
    std::string name;
    std::uint64_t size = 0;
};

/// The named streams of one file or folder, one after the other, in an order that stays as long as the
/// streams do. Serves one thread at a time. All calls throw base::FileFailure.
class StreamReader {
  public:
    virtual ~StreamReader() = default;

    /// Goes to the next stream, whatever is left of the one before; false behind the last.
    virtual bool next(StreamEntry& entry) = 0;
    /// Reads up to buffer.size() bytes of the stream that next() gave last; 0 at its end.
    virtual std::size_t read(base::ByteSpan buffer) = 0;
};

/// Alternate data streams on Windows, extended attributes on Linux (all classes that the caller may see, but
/// for access lists, which AccessLists reads).
class StreamSource {
  public:
    virtual ~StreamSource() = default;

    /// Opens the streams of a file or folder, of the link itself where the path is a link. Others may have
    /// the file open for reading and writing. A file system that keeps no streams gives a reader without any.
    /// Throws base::FileFailure: FileNotFound, AccessDenied, SharingViolation ...; the first failure may come
    /// from the reader's next() instead.
    virtual std::unique_ptr<StreamReader> open(const std::string& path) = 0;
    /// Whether a failure says that streams cannot be listed there at all, so that nothing is known of any.
    virtual bool isNotSupported(const base::FileFailure& failure) const noexcept = 0;
};

}  // namespace corvalence::platform
