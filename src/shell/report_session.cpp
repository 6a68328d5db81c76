#include "shell/report_session.h"

#include <algorithm>
#include <utility>

#include "components/kinds.h"
#include "files/own_status.h"
#include "reports/report_writer.h"
#include "reports/saved_report.h"

namespace corvalence::shell {

namespace {

constexpr std::string_view kIncomplete = "Not everything could be checked.";

}  // namespace

namespace {

std::string caption(std::size_t current, std::size_t total) {
    return "Page: " + std::to_string(current) + " of " + std::to_string(total);
}

}  // namespace

void ReportSession::showCurrent(std::vector<reports::ReportKind> kinds, std::size_t number) {
    savedPath_.clear();
    incomplete_.clear();
    kinds_ = std::move(kinds);
    open(std::clamp<std::size_t>(number, 1, kinds_.size()) - 1, End::First);
}

bool ReportSession::showSaved(const std::string& path, std::optional<reports::ReportKind> mode) {
    if (const auto fault = reports::findLetterFault(path, mode)) {
        vault_.platform.ui.message(platform::Icon::Stop, *fault);
        return false;
    }
    savedPath_ = path;
    incomplete_.clear();
    kinds_ = {reports::findReportRow(path.back())->kind};
    open(0, End::First);
    return true;
}

void ReportSession::clear() {
    kinds_.clear();
    savedPath_.clear();
    pages_.reset();
    report_.reset();
    range_ = {0, 0};
    page_ = 1;
    at_ = 0;
    reports::removeReports(vault_);
}

std::unique_ptr<ReportSession> ReportSession::again() const {
    auto session = std::make_unique<ReportSession>(vault_);
    session->savedPath_ = savedPath_;
    session->kinds_ = {row().kind};
    session->open(0, End::First);
    return session;
}

void ReportSession::open(std::size_t at, End end) {
    const std::string failure = list(at, end);
    // Last: windows are painted while the user reads it.
    if (isUnreadable_) vault_.platform.ui.message(platform::Icon::Stop, failure);
}

std::string ReportSession::list(std::size_t at, End end) {
    at_ = at;
    range_ = {0, 0};
    pages_.reset();
    report_.reset();
    renderer_ = components::makeRenderer(row().kind, vault_.platform);
    const files::OwnStatus status(vault_.platform.ui, "Listing Report Details...");
    std::string failure;
    try {
        const std::string path =
            isSaved() ? savedPath_ : reports::reportPath(vault_.configuration, row().kind);
        report_ = reports::ReportFile::open(vault_, path);
        if (isSaved() && !report_)
            throw reports::ReportAccessError(base::FileFailure(base::Cause::FileNotFound, 0, path));
    } catch (const reports::ReportAccessError& failed) {
        failure = failed.what();
    }
    isUnreadable_ = !failure.empty();
    fill(end == End::First ? 1 : SIZE_MAX);
    return failure;
}

void ReportSession::fill(std::size_t page) {
    page_ = 1;
    range_ = {0, 0};
    if (!report_) return;
    pages_.emplace(*report_, *renderer_, reports::reportPageSize(vault_.configuration));
    page_ = pages_->limited(page);
    range_ = pages_->range(page_);
}

std::string ReportSession::barCaption() const {
    return total() > 1 ? caption(number(), total()) : pageCaption();
}

std::string ReportSession::pageCaption() const {
    return caption(page_, pages());
}

bool ReportSession::next() {
    if (!hasNext()) return false;
    if (page_ < pages()) {
        fill(page_ + 1);
    } else {
        open(at_ + 1, End::First);
    }
    return true;
}

bool ReportSession::previous() {
    if (!hasPrevious()) return false;
    if (page_ > 1) {
        fill(page_ - 1);
    } else {
        open(at_ - 1, End::Last);
    }
    return true;
}

void ReportSession::goToPage(std::size_t page) {
    fill(page);
}

std::string ReportSession::emptyText() const {
    if (lines() > 0) return {};
    if (isUnreadable_) return "Report file access error.";
    if (!report_) return std::string(row().notChecked);
    if (report_->malformed() == 0) {
        const std::string text(row().noChanges);
        return incomplete_.count(row().kind) == 0 ? text : text + "\n" + std::string(kIncomplete);
    }
    const std::string path = isSaved() ? savedPath_ : reports::reportPath(vault_.configuration, row().kind);
    return path + std::string(row().refusal);
}

std::string ReportSession::damageText() const {
    if (lines() == 0) return {};
    if (report_->malformed() == 0)
        return incomplete_.count(row().kind) == 0 ? std::string() : std::string(kIncomplete);
    if (report_->malformed() == 1) return "1 line is no record of this kind.";
    return std::to_string(report_->malformed()) + " lines are no records of this kind.";
}

}  // namespace corvalence::shell
