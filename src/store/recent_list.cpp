#include "store/recent_list.h"

#include <algorithm>

#include "base/number_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::store {

namespace {

// In front of what is sealed.
constexpr char kMark = '\\';
constexpr char kLineFeed = '\n';

std::string keyOf(std::size_t place) {
    return "Recent File List\\File" + std::to_string(place + 1);
}

/// Settings hold text, and sealed bytes are any: each becomes the character U+0001 to U+00FF of its number,
/// in UTF-8.
std::string charactersOf(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80) text.push_back(static_cast<char>(0xC0 | (byte >> 6)));
        text.push_back(static_cast<char>(byte >= 0x80 ? 0x80 | (byte & 0x3F) : byte));
    }
    return text;
}

std::size_t capacity(const settings::Configuration& configuration) {
    const auto number = [&](std::string_view key) {
        return base::scanInteger(configuration.stored(key).value_or("")).value_or(0);
    };
    // A number out of range is none here, and does not stand for the fall-back.
    const auto count = number(settings::key::kRecentCount);
    const bool isWanted =
        count >= 0 && count <= static_cast<int>(RecentList::kMost) && number(settings::key::kRecentList) == 1;
    return isWanted ? static_cast<std::size_t>(count) : 0;
}

std::vector<std::string> storedTexts(const settings::Configuration& configuration) {
    std::vector<std::string> texts;
    for (std::size_t place = 0; place < RecentList::kMost; ++place)
        texts.push_back(configuration.stored(keyOf(place)).value_or(""));
    return texts;
}

/// Only what differs is written, as every text costs a whole writing of the settings.
void store(settings::Configuration& configuration, std::vector<std::string> texts, std::size_t most) {
    texts.resize(std::min(texts.size(), most));
    texts.resize(RecentList::kMost);
    const auto before = storedTexts(configuration);
    for (std::size_t place = 0; place < RecentList::kMost; ++place) {
        if (texts[place] != before[place]) configuration.writeQuietly(keyOf(place), texts[place]);
    }
}

}  // namespace

std::string RecentList::sealed(const std::string& path) const {
    return kMark + charactersOf(crypto::sealString(path + kLineFeed, session_.key, session_.chains.RecentIV));
}

std::vector<std::string> RecentList::paths(const std::vector<IndexRecord>& records) const {
    std::vector<std::string> found;
    const std::size_t most = capacity(configuration_);
    // Not every sealed string can be unsealed again, but the same path always gives the same one.
    for (const std::string& text : storedTexts(configuration_)) {
        if (text.empty() || found.size() == most) continue;
        const auto record = std::find_if(records.begin(), records.end(), [&](const IndexRecord& candidate) {
            return sealed(candidate.path) == text;
        });
        if (record != records.end() && std::find(found.begin(), found.end(), record->path) == found.end())
            found.push_back(record->path);
    }
    return found;
}

void RecentList::opened(const std::string& path, const DatabaseIndex& index) {
    if (capacity(configuration_) == 0 || configuration_.stored(keyOf(0)) == sealed(path)) return;
    std::vector<std::string> all = paths(index.records());
    std::erase(all, path);
    all.insert(all.begin(), path);
    write(all);
}

void RecentList::databaseDeleted(const std::string& path) {
    auto texts = storedTexts(configuration_);
    std::erase(texts, sealed(path));
    store(configuration_, std::move(texts), kMost);
}

void RecentList::write(const std::vector<std::string>& paths) {
    std::vector<std::string> texts;
    for (const std::string& path : paths)
        texts.push_back(sealed(path));
    store(configuration_, std::move(texts), capacity(configuration_));
}

void RecentList::cut(settings::Configuration& configuration) {
    store(configuration, storedTexts(configuration), capacity(configuration));
}

void RecentList::empty(settings::Configuration& configuration) {
    store(configuration, {}, 0);
}

}  // namespace corvalence::store
