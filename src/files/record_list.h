#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "files/file_record.h"
#include "files/paged_bytes.h"
#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::files {

/// The records of an open database by pages, for lists. Nothing plain is written anywhere: a page is unsealed
/// into memory that is wiped, and of the other pages no more is kept than where they begin, so that a
/// database of any size takes the memory of a page.
class RecordList {
  public:
    /// Goes through the whole database once, proving that its bytes are those of its record:
    /// DatabaseChanged where they are not. `pageSize`: rows of a page, at least 1. Shows no page yet. Throws
    /// base::FileFailure.
    RecordList(const store::Vault& vault, const store::OpenDatabaseContext& context, std::size_t pageSize);

    /// Records of the whole database.
    std::uint64_t count() const noexcept { return count_; }
    /// Bytes that its files had when they were listed.
    std::uint64_t totalSize() const noexcept { return totalSize_; }
    /// At least 1.
    std::size_t pages() const noexcept { return starts_.size(); }

    /// Shows a page by its number, from 1; numbers beyond the last page mean that one. Throws
    /// base::FileFailure, and DatabaseChanged where the file has got another size; the page shown before
    /// stays then.
    void show(std::size_t page);
    /// 0 while none is shown.
    std::size_t page() const noexcept { return page_; }

    // The page that is shown.
    std::size_t rows() const noexcept { return lines_.size(); }
    /// Without its end. The view holds until another page is shown.
    std::string_view line(std::size_t row) const noexcept;
    /// Nothing where the line is no record; its path is pathOfLine() then.
    std::optional<FileRecord> record(std::size_t row) const;
    /// What no other line of the database begins with: path, separator, digest.
    std::string key(std::size_t row) const;

  private:
    struct Line {
        std::size_t begin;
        std::size_t length;
    };
    class Scan;

    std::unique_ptr<platform::File> openUnchanged() const;

    const store::Vault& vault_;
    std::string path_;
    std::size_t width_;
    std::uint64_t sealedSize_ = 0;
    std::uint64_t count_ = 0;
    std::uint64_t totalSize_ = 0;
    std::uint64_t end_ = 0;              // of the last record
    std::vector<std::uint64_t> starts_;  // of the pages
    std::size_t page_ = 0;
    std::unique_ptr<ContentBuffer> text_;
    std::vector<Line> lines_;
};

}  // namespace corvalence::files
