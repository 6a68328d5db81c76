#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "base/page_buffer.h"
#include "crypto/random_unsealer.h"
#include "crypto/secure_zero.h"
#include "files/backup_index.h"
#include "platform/file_system.h"

namespace corvalence::files {

/// A buffer for the content of users' files, overwritten before it is given back.
class ContentBuffer : public base::PageBuffer {
  public:
    using base::PageBuffer::PageBuffer;
    ~ContentBuffer() { crypto::secureZero(data(), size()); }
    ContentBuffer(const ContentBuffer&) = delete;
    ContentBuffer& operator=(const ContentBuffer&) = delete;
};

/// The bytes of a file or of its backup, of any size: read, and deciphered, only where they are asked for,
/// and held in memory alone. Reads throw base::FileFailure.
class PagedBytes {
  public:
    /// The whole of an open file.
    explicit PagedBytes(std::unique_ptr<platform::File> file);
    /// What a backup entry holds in the container. `chain` is that of the sealed ones. InvalidFile where the
    /// entry's lengths do not fit each other, EndOfFile where the container ends before the entry does.
    PagedBytes(std::unique_ptr<platform::File> container, const BackupIndexEntry& entry,
               const crypto::SessionKey& key, const crypto::ChainValue& chain);

    /// Number of bytes when this object was made.
    std::uint64_t size() const noexcept { return size_; }

    /// Fills `bytes`, a multiple of 16 in size, from `position` on, another multiple. Fewer at the end, or
    /// where the file has become shorter.
    std::size_t read(std::uint64_t position, base::ByteSpan bytes);
    /// The `width` bytes from `position` on, out of a page in memory where they are there; `position` is a
    /// multiple of `width`, that a power of 2. Fewer at the end, none behind it. Valid until the next call.
    base::ByteView peek(std::uint64_t position, std::size_t width);

  private:
    std::unique_ptr<platform::File> file_;
    std::optional<crypto::RandomUnsealer> unsealer_;
    std::uint64_t begin_ = 0;
    std::uint64_t size_;
    static constexpr std::uint64_t kNoPage = UINT64_MAX;
    std::unique_ptr<ContentBuffer> page_;  // made at the first peek
    std::uint64_t pageBegin_ = kNoPage;
    std::size_t pageSize_ = 0;
};

}  // namespace corvalence::files
