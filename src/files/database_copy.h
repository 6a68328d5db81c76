#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "crypto/sealed_stream.h"
#include "crypto/working_files.h"
#include "files/record_reader.h"
#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::files {

/// The sealed database is not the one that its index record describes.
class DatabaseChanged : public std::runtime_error {
  public:
    explicit DatabaseChanged(const std::string& path);
};

/// The plain working copy of an open database: beside it, its owner's alone, wiped when this object goes.
class DatabaseCopy {
  public:
    /// Unseals the database and proves in the same pass that its bytes are those of the record;
    /// DatabaseChanged where they are not. Throws base::FileFailure.
    DatabaseCopy(store::Vault& vault, const store::OpenDatabaseContext& context);

    platform::File& file() noexcept { return copy_.file(); }
    const std::string& path() const noexcept { return copy_.path(); }
    /// Where the text ends, a stale tail included.
    std::uint64_t end() const noexcept { return end_; }
    RecordReader records();

    /// Puts a line behind the text, where records() does not come to it.
    void append(const std::string& line);
    /// Copies what was appended to `writer`.
    void writeAppended(crypto::SealWriter& writer);
    /// Hands the lines that were appended to `visit`, those from the `first` byte of them on.
    void readAppended(std::uint64_t first, const std::function<void(std::string_view line)>& visit);
    /// Bytes appended so far.
    std::uint64_t appended() const noexcept { return appended_; }

    /// Wipes the copy now and reports a failure.
    void discard() { copy_.discard(); }

  private:
    crypto::TemporaryFile copy_;
    std::uint64_t end_;
    std::size_t width_;
    std::uint64_t appended_ = 0;
};

}  // namespace corvalence::files
