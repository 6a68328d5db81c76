#include "schedule/log_view.h"

#include <algorithm>

#include "base/utf8.h"

namespace corvalence::schedule {

namespace {

enum class Test {
    Starts,
    Ends,
    EndsCounting,  // 0 in front is nothing to be pointed out
    StartsNow,     // the value behind the label is compared with that of the line before
};

struct Rule {
    Test test;
    std::string_view text;
    LogIcon icon;
};

// Later rules overrule earlier ones. Lines are compared without the blanks at their ends.
constexpr std::array kRules = {
    Rule{Test::Starts, "Database", LogIcon::Database},
    Rule{Test::Starts, "New Service detected!", LogIcon::Added},
    Rule{Test::Ends, "as been changed!", LogIcon::Changed},
    Rule{Test::Starts, "Service Removed!", LogIcon::Removed},
    Rule{Test::Starts, "Coul", LogIcon::Changed},
    Rule{Test::Starts, "[ CA", LogIcon::Changed},
    Rule{Test::Starts, "New Registry", LogIcon::Added},
    Rule{Test::Starts, "Removed Registry", LogIcon::Removed},
    Rule{Test::Starts, "Changed Registry", LogIcon::Changed},
    Rule{Test::Starts, "File added", LogIcon::Added},
    Rule{Test::Starts, "Directory added", LogIcon::Added},
    Rule{Test::Starts, "Alternate Data Stream added", LogIcon::Added},
    Rule{Test::Starts, "File removed", LogIcon::Removed},
    Rule{Test::Starts, "Directory removed", LogIcon::Removed},
    Rule{Test::Starts, "Alternate Data Stream removed", LogIcon::Removed},
    Rule{Test::Starts, "File moved to Recycle", LogIcon::Recycled},
    Rule{Test::Starts, "Directory moved to Recycle", LogIcon::Recycled},
    Rule{Test::Starts, "File created then moved to Recycle", LogIcon::Recycled},
    Rule{Test::Starts, "Directory created then moved to Recycle", LogIcon::Recycled},
    Rule{Test::Starts, "The Permi", LogIcon::Changed},
    Rule{Test::Starts, "File name", LogIcon::Detail},
    Rule{Test::Starts, "Digest value now", LogIcon::Detail},
    Rule{Test::StartsNow, "Size now", LogIcon::Detail},
    Rule{Test::StartsNow, "Attributes now", LogIcon::Detail},
    Rule{Test::StartsNow, "Creation time now", LogIcon::Detail},
    Rule{Test::StartsNow, "Modification time now", LogIcon::Detail},
    Rule{Test::EndsCounting, "unchecked.", LogIcon::Changed},
    Rule{Test::EndsCounting, " changed.", LogIcon::Detail},
};

constexpr std::size_t kCompared = 300;  // of the line before: a label and the value of one field

std::string_view withoutBlanks(std::string_view line) noexcept {
    const std::size_t last = line.find_last_not_of(' ');
    return line.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

std::string_view valueIn(std::string_view line) noexcept {
    constexpr std::string_view kLabelEnd = ": ";
    const std::size_t at = line.find(kLabelEnd);
    return at == std::string_view::npos ? std::string_view() : line.substr(at + kLabelEnd.size());
}

bool isAboutStream(std::string_view line) noexcept {
    return line.starts_with("Alternate Data Stream added") ||
           line.starts_with("Alternate Data Stream removed");
}

bool isValidLine(std::string_view line) noexcept {
    return line.starts_with("Database");
}

}  // namespace

LogIcon LogClassifier::classify(std::string_view line) {
    LogIcon icon = normal_;
    const std::string_view text = withoutBlanks(line);
    for (const Rule& rule : kRules) {
        const bool isStart = rule.test == Test::Starts || rule.test == Test::StartsNow;
        if (isStart ? !line.starts_with(rule.text) : !text.ends_with(rule.text)) continue;
        const bool isNothing = (rule.test == Test::EndsCounting && line.starts_with('0')) ||
                               (rule.test == Test::StartsNow && valueIn(line) == valueIn(previous_));
        icon = isNothing ? LogIcon::Plain : rule.icon;
    }
    previous_ = line.substr(0, kCompared);
    return icon;
}

std::string printable(std::string_view line) {
    std::string shown(line);
    if (isAboutStream(line)) return shown;
    for (std::size_t at = 0; at < line.size();) {
        const auto byte = static_cast<unsigned char>(line[at]);
        const std::size_t length = byte < 0x80 ? 1 : base::utf8Length(line.substr(at));
        if (length == 0 || byte < 0x20 || byte == 0x7F) shown[at] = ' ';
        at += std::max<std::size_t>(length, 1);
    }
    return shown;
}

LogView::LogView(platform::FileSystem& files, const std::string& path, const crypto::SessionKey& key,
                 const crypto::ChainValue& chain, Manner manner, platform::Progress* progress)
    : key_(key), chain_(chain), manner_(manner) {
    if (!files.status(path, platform::Follow::Yes)) return;
    file_ = files.openShared(path);
    const std::uint64_t size = file_->size();
    isValid_ = size == 0;
    LogLines lines(*file_, key_, chain_);
    std::uint64_t before = 0;
    std::uint64_t offset = 0;
    for (std::string_view line; lines.next(line); ++rows_) {
        if (rows_ % kStride == 0) {
            marks_.push_back({offset, before});
            if (progress != nullptr) {
                if (progress->cancelled()) break;
                progress->bar(static_cast<std::uint32_t>(offset * platform::Progress::kSteps / size));
            }
        }
        if (line.size() > kLongestShown) ++truncated_;
        isValid_ = isValid_ || isValidLine(line);
        before = offset;
        offset = lines.offset();
    }
}

void LogView::read(std::size_t first, std::size_t count,
                   const std::function<bool(const LogRow&)>& sink) const {
    if (first >= rows_) return;
    const std::size_t last = first + std::min(count, rows_ - first);
    const Mark& mark = marks_[first / kStride];
    std::size_t row = first / kStride * kStride;
    LogLines lines(*file_, key_, chain_, mark.before);
    LogClassifier classifier(manner_.isDark);
    std::string_view line;
    if (row > 0 && lines.next(line)) classifier.classify(printable(line.substr(0, kLongestShown)));
    for (; row < last && lines.next(line); ++row) {
        const bool isLong = manner_.truncates && line.size() > kLongestShown;
        LogRow shown{printable(isLong ? line.substr(0, kLongestShown) : line), LogIcon::Plain, isLong};
        shown.icon = classifier.classify(shown.text);
        if (row >= first && !sink(shown)) return;
    }
}

}  // namespace corvalence::schedule
