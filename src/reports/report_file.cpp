#include "reports/report_file.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/record_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::reports {

namespace {

constexpr crypto::UnsealVariant kUnsealReport = {"MFRDN", crypto::EndRule::textTail()};
constexpr std::string_view kRecordEnd = "\x7F\r\n";
constexpr std::int64_t kUsualPage = 5000;
constexpr std::int64_t kLongestPage = 65000;

}  // namespace

ReportAccessError::ReportAccessError(const base::FileFailure& failure)
    : base::FileFailure(failure.cause(), failure.path(),
                        "Report file access error.\n\nCorvalence support reference code: RAE") {}

std::optional<ReportFile> ReportFile::open(const store::Vault& vault, const std::string& path) {
    platform::FileSystem& files = vault.platform.files;
    try {
        if (!files.status(path, platform::Follow::Yes)) return std::nullopt;
        return ReportFile(
            crypto::unsealText(files, path, vault.session.key, vault.session.chains.IndexIV, kUnsealReport));
    } catch (const base::FileFailure& failure) {
        throw ReportAccessError(failure);
    }
}

ReportFile::ReportFile(crypto::SecretText text) : text_(std::move(text)) {
    // A short text would be copied with its object, and the views would go astray.
    text_.reserve(base::kLineLimit);
    for (std::string_view rest = text_.view(); !rest.empty();) {
        const std::size_t feed = rest.find('\n');
        std::string_view line = rest.substr(0, feed == std::string_view::npos ? rest.size() : feed + 1);
        if (line.ends_with(kRecordEnd)) {
            lines_.push_back(base::withoutLineEnd(line));
        } else if (!base::isStaleTail(rest.size())) {
            ++malformed_;
        }
        rest.remove_prefix(line.size());
    }
}

ReportPages::ReportPages(const ReportFile& report, const RecordRenderer& renderer, std::size_t pageSize)
    : starts_{0}, lines_(report.lines().size()) {
    std::size_t record = 0;  // where the record of the present line begins
    for (std::size_t line = 0; line < lines_; ++line) {
        if (renderer.beginsRecord(line, report.lines()[line])) record = line;
        if (line - starts_.back() < pageSize) continue;
        // A record longer than a page is split all the same.
        starts_.push_back(record > starts_.back() ? record : line);
    }
}

std::size_t ReportPages::limited(std::size_t page) const noexcept {
    return std::clamp<std::size_t>(page, 1, count());
}

ReportPages::Range ReportPages::range(std::size_t page) const noexcept {
    const std::size_t at = limited(page);
    return {starts_[at - 1], at < count() ? starts_[at] : lines_};
}

std::string ReportPages::caption(std::size_t page) const {
    return "Page: " + std::to_string(limited(page)) + " of " + std::to_string(count());
}

std::size_t reportPageSize(const settings::Configuration& configuration) {
    const auto stored = configuration.stored(settings::key::kPageSize);
    const std::int64_t size = stored ? base::scanInteger(*stored).value_or(0) : 0;
    return static_cast<std::size_t>(size < 1 ? kUsualPage : std::min(size, kLongestPage));
}

}  // namespace corvalence::reports
