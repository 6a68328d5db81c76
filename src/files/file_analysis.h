#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "files/byte_progress.h"
#include "files/file_record.h"
#include "files/paged_bytes.h"
#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::files {

enum class AnalysisView { Text, Hex };

/// Bytes of a row.
constexpr std::size_t rowWidth(AnalysisView view) noexcept {
    return view == AnalysisView::Text ? 128 : 32;
}

/// What is going on while the rows of a file are gone through.
constexpr std::string_view analysisStatus(AnalysisView view) noexcept {
    return view == AnalysisView::Text ? "Analysing File [Text details]..."
                                      : "Analysing File [Hex details]...";
}

/// The mark of a row of the file as it is now.
enum class RowMark { Equal = 0, Differs = 1, NoBackup = 3 };

/// The columns of a row.
struct AnalysisRow {
    std::string offset;  // bytes from the start: decimal in the text view, hexadecimal in the other
    std::string hex;     // the hex view's pairs
    std::string ascii;   // a full stop for every byte below 32 or above 126
};

AnalysisRow analysisRow(AnalysisView view, std::uint64_t number, base::ByteView bytes);

/// What stands on the side of the backup, a row each, where there is none.
inline constexpr std::array<std::string_view, 3> kNotBackedUpRows = {
    "File was not backed up.", "",
    "To enable comparison in future, change your settings with the 'Configuration' menu."};

/// A row that is not the same on both sides. A side that has no such row is empty.
struct DifferingRow {
    std::uint64_t number;
    base::ByteView now;
    base::ByteView backup;
};

/// Compares a listed file with its backup, row by row, and changes neither. Only the rows that are asked for
/// are read; backups are deciphered in memory. Sizes are those of the moment when it was opened: of a file
/// that shrinks later the last rows are missing. What reads rows throws base::FileFailure where that fails.
class FileAnalysis {
  public:
    enum class Side { Now, Backup };
    enum class Backup { Found, NotBackedUp, Unusable };

    /// Opens both sides. What is wrong with either of them is not thrown: backup(), trouble() and
    /// nowFailure() say it.
    FileAnalysis(store::Vault& vault, const store::OpenDatabaseContext& context, const FileRecord& record);

    Backup backup() const noexcept { return backupState_; }
    /// Why the backup is Unusable: the container is missing, or it or its list are damaged or cannot be read.
    const std::string& trouble() const noexcept { return trouble_; }
    /// Why the file could not be opened; it has no rows then. Empty where it was opened.
    const std::string& nowFailure() const noexcept { return nowFailure_; }

    /// Bytes of a side.
    std::uint64_t size(Side side) const noexcept;
    /// Bytes of the longer side.
    std::uint64_t size() const noexcept;
    std::uint64_t rowCount(Side side, AnalysisView view) const noexcept;
    /// Rows that one side or the other has.
    std::uint64_t rowCount(AnalysisView view) const noexcept;

    /// Nothing where the side has no such row.
    std::optional<AnalysisRow> row(Side side, AnalysisView view, std::uint64_t number);
    /// By the bytes of both rows. Nothing where there is no backup to compare with, or the file has no such
    /// row.
    std::optional<RowMark> mark(AnalysisView view, std::uint64_t number);

    enum class Walk { Whole, Stopped, Cancelled };
    /// Goes on as long as it returns true.
    using Visitor = std::function<bool(const DifferingRow&)>;

    /// Hands every differing row from the `first` one on to `visit`, in their order; the bytes are valid
    /// during the call. Reads large blocks and asks for Cancel before each.
    Walk forEachDifference(AnalysisView view, std::uint64_t first, ByteProgress& progress,
                           const Visitor& visit);
    /// The last differing row in front of the row `before`, likewise, blocks from the last to the first.
    /// Stopped where there is one, Whole where there is none.
    Walk findDifferenceBefore(AnalysisView view, std::uint64_t before, ByteProgress& progress,
                              std::uint64_t& row);

  private:
    void openNow(const FileRecord& record);
    void openBackup(const FileRecord& record);
    BackupIndexEntry backupOf(const FileRecord& record, const store::BackupPair& pair,
                              const BackupIndex& index, const std::vector<std::size_t>& entries);
    base::ByteView peek(Side side, AnalysisView view, std::uint64_t number);

    store::Vault& vault_;
    const store::OpenDatabaseContext& context_;
    std::optional<PagedBytes> now_;
    std::optional<PagedBytes> backup_;
    Backup backupState_ = Backup::Unusable;
    std::string trouble_;
    std::string nowFailure_;
};

}  // namespace corvalence::files
