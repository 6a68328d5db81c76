#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "reports/report_file.h"
#include "reports/report_kind.h"
#include "store/vault.h"

namespace corvalence::shell {

/// The reports that a view goes through: those of the check that has just ended, one or all five kinds of a
/// Complete System, or a saved one. Reports have pages of lines; next and previous go through the pages of a
/// report and then to the report beside it.
class ReportSession {
  public:
    explicit ReportSession(store::Vault& vault) : vault_(vault) {}

    // A report that cannot be read is told to the user and is shown empty.

    /// Shows the first page of one of these kinds, at least one, by its number among them, from 1.
    void showCurrent(std::vector<reports::ReportKind> kinds, std::size_t number = 1);
    /// Something of this kind could not be compared: its report says so, with rows and without.
    void markIncomplete(reports::ReportKind kind) { incomplete_.insert(kind); }
    /// Shows a saved report. `mode`: the kind that is at work, none for a Complete System. False, and nothing
    /// changes, where its letter is refused; the user is told.
    bool showSaved(const std::string& path, std::optional<reports::ReportKind> mode);
    /// Ends the showing and removes the reports of the last check; a saved one stays. Throws
    /// base::FileFailure where one could not be removed; the showing has ended all the same.
    void clear();

    /// Another session on the report that is shown, alone and at its first page: for what goes through it
    /// while this one stays where it is.
    std::unique_ptr<ReportSession> again() const;

    bool isShown() const noexcept { return !kinds_.empty(); }
    bool isSaved() const noexcept { return !savedPath_.empty(); }

    // While one is shown.

    const reports::ReportRow& row() const noexcept { return reports::reportRow(kinds_[at_]); }
    /// Of the reports, from 1.
    std::size_t number() const noexcept { return at_ + 1; }
    std::size_t total() const noexcept { return kinds_.size(); }
    /// Of the pages of this report, from 1.
    std::size_t page() const noexcept { return page_; }
    std::size_t pages() const noexcept { return pages_ ? pages_->count() : 1; }
    /// "Page: 2 of 5": for the Page bar, of the reports where there are several, else of the pages.
    std::string barCaption() const;
    /// The same of the pages alone.
    std::string pageCaption() const;

    bool hasNext() const noexcept { return page_ < pages() || number() < total(); }
    bool hasPrevious() const noexcept { return page_ > 1 || at_ > 0; }
    // False, and nothing changes, where there is none.
    bool next();
    bool previous();
    /// Of this report; a number beyond the last page means that one.
    void goToPage(std::size_t page);

    /// What is told in place of rows; empty where there are rows.
    std::string emptyText() const;
    /// What is told beside the rows: lines of the file that are no records; empty where all are.
    std::string damageText() const;

    /// Lines of the page.
    std::size_t lines() const noexcept { return range_.end - range_.begin; }
    std::string_view line(std::size_t at) const { return report_->lines()[range_.begin + at]; }
    /// Number of a line of the page in its report, for renderer().
    std::size_t lineNumber(std::size_t at) const noexcept { return range_.begin + at; }
    const reports::RecordRenderer& renderer() const noexcept { return *renderer_; }

  private:
    enum class End { First, Last };
    void open(std::size_t at, End end);
    /// Why the report could not be read; empty where it could, and where there is none.
    std::string list(std::size_t at, End end);
    void fill(std::size_t page);

    store::Vault& vault_;
    std::vector<reports::ReportKind> kinds_;
    std::string savedPath_;
    std::set<reports::ReportKind> incomplete_;
    std::size_t at_ = 0;
    std::optional<reports::ReportFile> report_;
    bool isUnreadable_ = false;
    std::unique_ptr<reports::RecordRenderer> renderer_;
    std::optional<reports::ReportPages> pages_;
    reports::ReportPages::Range range_{0, 0};
    std::size_t page_ = 1;
};

}  // namespace corvalence::shell
