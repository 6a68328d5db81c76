#include "components/sealed_lines.h"

#include <algorithm>
#include <numeric>

#include "base/hex_text.h"
#include "base/record_text.h"
#include "components/cancellable_sort.h"
#include "crypto/sealed_file.h"
#include "files/database_copy.h"

namespace corvalence::components {

namespace {

/// Ends what has no other way to be ended. Caught in this file.
struct Cancelled {};

}  // namespace

SealedLines::SealedLines(const store::Vault& vault, const store::SealedFileRecord& file, const LineForm& form,
                         platform::Progress* progress) {
    crypto::Md5 digest;
    try {
        text_ = crypto::unsealText(vault.platform.files, file.path, vault.session.key,
                                   crypto::PathIV(file.path), crypto::kUnsealDatabase, &digest, [&] {
                                       if (progress != nullptr && progress->cancelled()) throw Cancelled();
                                   });
    } catch (const Cancelled&) {
        return;
    }
    if (base::hexText(digest.finish()) != file.digest) throw files::DatabaseChanged(file.path);
    split(form);
}

void SealedLines::split(const LineForm& form) {
    const std::string_view text = text_.view();
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t feed = std::min(text.find('\n', begin), text.size() - 1);
        const std::string_view whole = text.substr(begin, feed + 1 - begin);
        const std::string_view line = base::withoutLineEnd(whole);
        if (whole.size() <= form.limit && whole.ends_with("\r\n") && form.isRecord(line)) {
            ends_.push_back({begin, static_cast<std::uint32_t>(line.size())});
        } else if (form.other == LineForm::Other::GoesOn && whole.ends_with("\r\n") && !ends_.empty()) {
            ends_.back().length = static_cast<std::uint32_t>(begin + line.size() - ends_.back().begin);
        } else if (!base::isStaleTail(text.size() - begin)) {
            ++malformed_;
        }
        begin = feed + 1;
    }
}

std::string_view SealedLines::operator[](std::size_t line) const noexcept {
    return text_.view().substr(ends_[line].begin, ends_[line].length);
}

LineIndex::LineIndex(const SealedLines& lines, bool whole, platform::Progress& progress)
    : lines_(lines), whole_(whole), order_(lines.size()), places_(lines.size()), tree_(2 * lines.size()) {
    std::iota(order_.begin(), order_.end(), 0U);
    if (!sort(progress)) order_.clear();
    const std::size_t count = order_.size();
    for (std::size_t place = 0; place < count; ++place) {
        places_[order_[place]] = static_cast<std::uint32_t>(place);
        tree_[count + place] = order_[place];
    }
    for (std::size_t node = count; node-- > 1;)
        tree_[node] = std::min(tree_[2 * node], tree_[2 * node + 1]);
}

bool LineIndex::sort(platform::Progress& progress) {
    return sortUnlessCancelled(
        order_.begin(), order_.end(),
        [this](std::uint32_t a, std::uint32_t b) { return lines_[a] < lines_[b]; }, progress);
}

LineIndex::Range LineIndex::rangeOf(std::string_view text) const {
    const auto compared = [&](std::uint32_t line) {
        return whole_ ? lines_[line] : lines_[line].substr(0, text.size());
    };
    const auto begin =
        std::lower_bound(order_.begin(), order_.end(), text,
                         [&](std::uint32_t line, std::string_view value) { return compared(line) < value; });
    const auto end =
        std::upper_bound(begin, order_.end(), text,
                         [&](std::string_view value, std::uint32_t line) { return value < compared(line); });
    return {static_cast<std::size_t>(begin - order_.begin()), static_cast<std::size_t>(end - order_.begin())};
}

bool LineIndex::has(std::string_view text) const {
    const Range range = rangeOf(text);
    return range.begin < range.end;
}

std::optional<std::size_t> LineIndex::equal(std::string_view text) const {
    // The shortest of those that begin with it stands first.
    const Range range = rangeOf(text);
    if (range.begin == range.end || lines_[order_[range.begin]] != text) return std::nullopt;
    return order_[range.begin];
}

std::optional<std::size_t> LineIndex::find(std::string_view text, std::size_t from) {
    dropBefore(from);
    const std::uint32_t line = lowest(rangeOf(text));
    if (line == kGone) return std::nullopt;
    return line;
}

void LineIndex::dropBefore(std::size_t line) {
    for (; dropped_ < std::min(line, order_.size()); ++dropped_) {
        std::size_t node = order_.size() + places_[dropped_];
        tree_[node] = kGone;
        while ((node /= 2) > 0)
            tree_[node] = std::min(tree_[2 * node], tree_[2 * node + 1]);
    }
}

std::uint32_t LineIndex::lowest(Range range) const {
    std::uint32_t least = kGone;
    std::size_t begin = range.begin + order_.size();
    std::size_t end = range.end + order_.size();
    for (; begin < end; begin /= 2, end /= 2) {
        if (begin % 2 == 1) least = std::min(least, tree_[begin++]);
        if (end % 2 == 1) least = std::min(least, tree_[--end]);
    }
    return least;
}

}  // namespace corvalence::components
