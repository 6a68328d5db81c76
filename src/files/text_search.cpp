#include "files/text_search.h"

#include <algorithm>
#include <cstring>

#include "platform/file_copy.h"

namespace corvalence::files {

namespace {

constexpr std::uint8_t kBlank = ' ';
// Letters and digits, the most common first, as they stand in texts and programs. Anything else is rarer.
constexpr std::string_view kCommon = " etaoinsrlhdcumfpgywbvkxjqz0123456789";

constexpr std::uint8_t folded(std::uint8_t byte) noexcept {
    return byte >= 'A' && byte <= 'Z' ? static_cast<std::uint8_t>(byte + ('a' - 'A')) : byte;
}

constexpr bool isText(std::uint8_t byte) noexcept {
    return static_cast<std::uint8_t>(byte - 32) <= 126 - 32;
}

/// How rare a byte is: the larger, the rarer.
std::size_t rarity(char c) noexcept {
    const std::size_t place = kCommon.find(static_cast<char>(folded(static_cast<std::uint8_t>(c))));
    return place == std::string_view::npos ? kCommon.size() : place;
}

char rarest(const std::string& bytes) noexcept {
    return *std::max_element(bytes.begin(), bytes.end(),
                             [](char a, char b) { return rarity(a) < rarity(b); });
}

/// The bytes that all texts have.
std::string sharedBytes(const std::vector<std::string>& texts) {
    std::string shared = texts.front();
    std::erase_if(shared, [&](char c) {
        return std::any_of(texts.begin(), texts.end(),
                           [&](const std::string& text) { return text.find(c) == std::string::npos; });
    });
    return shared;
}

std::size_t longestOf(const std::vector<std::string>& texts) noexcept {
    constexpr std::size_t kBlanks = 2;
    std::size_t longest = 0;
    for (const std::string& text : texts)
        longest = std::max(longest, text.empty() ? 0 : text.size() + kBlanks);
    return longest;
}

/// Offset of the first byte that is no text; the size where all are.
std::size_t textLength(base::ByteView bytes) noexcept {
    constexpr std::size_t kStride = 64;
    std::size_t at = 0;
    for (; at + kStride <= bytes.size(); at += kStride) {
        unsigned others = 0;
        for (std::size_t i = 0; i < kStride; ++i)
            others |= static_cast<unsigned>(!isText(bytes[at + i]));
        if (others != 0) break;
    }
    while (at < bytes.size() && isText(bytes[at]))
        ++at;
    return at;
}

/// Offsets of one byte value in a run, in order, each found by one scan.
class Occurrences {
  public:
    Occurrences(base::ByteView bytes, std::uint8_t value) : bytes_(bytes), value_(value) { find(0); }
    std::size_t place() const noexcept { return place_; }
    void next() noexcept { find(place_ + 1); }

  private:
    void find(std::size_t from) noexcept {
        const void* found =
            from < bytes_.size() ? std::memchr(bytes_.data() + from, value_, bytes_.size() - from) : nullptr;
        place_ = found == nullptr
                     ? bytes_.size()
                     : static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes_.data());
    }

    base::ByteView bytes_;
    std::uint8_t value_;
    std::size_t place_ = 0;
};

}  // namespace

TextSearch::TextSearch(std::vector<std::string> texts, const Rules& rules)
    : rules_(rules), longest_(longestOf(texts)), buffer_(std::max(platform::kBlockSize, 4 * longest_)) {
    for (std::string& text : texts) {
        if (!rules_.matchCase) {
            std::transform(text.begin(), text.end(), text.begin(),
                           [](char c) { return static_cast<char>(folded(static_cast<std::uint8_t>(c))); });
        }
        if (rules_.wholeWord && !text.empty()) text = ' ' + text + ' ';
    }
    if (longest_ == 0) return;
    const std::string shared = sharedBytes(texts);
    for (std::string& text : texts) {
        const char pivot = rarest(shared.empty() ? text : shared);
        put({std::move(text), 0}, pivot);
    }
}

void TextSearch::put(Text text, char pivot) {
    text.pivot = text.bytes.find(pivot);
    const auto byte = static_cast<std::uint8_t>(pivot);
    auto group = std::find_if(groups_.begin(), groups_.end(),
                              [&](const Group& candidate) { return candidate.pivot == byte; });
    if (group == groups_.end()) {
        const bool hasCapital = !rules_.matchCase && pivot >= 'a' && pivot <= 'z';
        const auto capital = static_cast<std::uint8_t>(hasCapital ? byte - ('a' - 'A') : byte);
        group = groups_.insert(groups_.end(), Group{byte, capital, {}});
    }
    group->texts.push_back(std::move(text));
}

bool TextSearch::isAt(const Text& text, const std::uint8_t* place) const noexcept {
    if (rules_.matchCase) return std::memcmp(place, text.bytes.data(), text.bytes.size()) == 0;
    return std::equal(text.bytes.begin(), text.bytes.end(), place,
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == folded(b); });
}

/// Whether a text of the group begins in front of `end`.
bool TextSearch::findIn(const Group& group, base::ByteView bytes, std::size_t end) const noexcept {
    const bool hasCapital = group.capital != group.pivot;
    Occurrences small(bytes, group.pivot);
    Occurrences capital(hasCapital ? bytes : base::ByteView(), group.capital);
    for (;;) {
        const std::size_t other = hasCapital ? capital.place() : bytes.size();
        const std::size_t place = std::min(small.place(), other);
        if (place == bytes.size()) return false;
        for (const Text& text : group.texts) {
            if (place < text.pivot) continue;
            const std::size_t begin = place - text.pivot;
            if (begin >= end || begin + text.bytes.size() > bytes.size()) continue;
            if (isAt(text, bytes.data() + begin)) return true;
        }
        place == other ? capital.next() : small.next();
    }
}

TextSearch::Result TextSearch::search(platform::File& file, platform::Progress& progress) {
    if (longest_ == 0) return Result::Found;
    std::size_t size = 0;
    // A blank that is not there stands for the file's beginning, and another one for its end.
    if (rules_.wholeWord) buffer_.data()[size++] = kBlank;
    for (bool ended = false; !ended;) {
        if (progress.cancelled()) return Result::Cancelled;
        const std::size_t room = buffer_.size() - size - 1;
        const std::size_t count = file.read(buffer_.bytes().subspan(size, room));
        size += count;
        ended = count < room;
        if (ended && rules_.wholeWord) buffer_.data()[size++] = kBlank;
        const base::ByteView bytes = buffer_.bytes().first(size);
        const std::size_t text = rules_.textOnly ? textLength(bytes) : size;
        const auto isIn = [&](const Group& group) { return findIn(group, bytes, text); };
        if (std::any_of(groups_.begin(), groups_.end(), isIn)) return Result::Found;
        if (text < size) return Result::NotFound;
        // The beginning of a text that goes on in the next block.
        const std::size_t kept = std::min(size, longest_ - 1);
        std::memmove(buffer_.data(), buffer_.data() + size - kept, kept);
        size = kept;
    }
    return Result::NotFound;
}

}  // namespace corvalence::files
