#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "crypto/secret_text.h"
#include "reports/record_renderer.h"
#include "reports/report_kind.h"
#include "store/vault.h"

namespace corvalence::reports {

/// A report cannot be opened or read: what() is the message for the user.
class ReportAccessError : public base::FileFailure {
  public:
    explicit ReportAccessError(const base::FileFailure& failure);
};

/// A sealed report, unsealed into memory.
class ReportFile {
  public:
    /// The report at `path`; nothing where there is none. Throws ReportAccessError.
    static std::optional<ReportFile> open(const store::Vault& vault, const std::string& path);

    /// Lines that are records by their form, without their ends.
    const std::vector<std::string_view>& lines() const noexcept { return lines_; }
    /// Lines that are none: the file is damaged, no report, or sealed under another password.
    std::size_t malformed() const noexcept { return malformed_; }

  private:
    explicit ReportFile(crypto::SecretText text);

    crypto::SecretText text_;  // the views lead into it; it never lies inside its object
    std::vector<std::string_view> lines_;
    std::size_t malformed_ = 0;
};

/// How the lines of a report fall into pages: as many lines a page as are shown at once, or fewer where a
/// record of several lines would be split.
class ReportPages {
  public:
    ReportPages(const ReportFile& report, const RecordRenderer& renderer, std::size_t pageSize);

    /// At least 1.
    std::size_t count() const noexcept { return starts_.size(); }
    /// A page by its number, from 1; numbers beyond the last page mean that one.
    std::size_t limited(std::size_t page) const noexcept;
    struct Range {
        std::size_t begin;
        std::size_t end;
    };
    Range range(std::size_t page) const noexcept;
    /// "Page: 2 of 5".
    std::string caption(std::size_t page) const;

  private:
    std::vector<std::size_t> starts_;
    std::size_t lines_;
};

/// Lines of a page by the setting: a text below 1, or none, means 5000. No list shows more than 65000.
std::size_t reportPageSize(const settings::Configuration& configuration);

}  // namespace corvalence::reports
