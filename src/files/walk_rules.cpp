#include "files/walk_rules.h"

#include <algorithm>
#include <array>

namespace corvalence::files {

namespace {

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

// Attribute words of folders: plain, archive, compressed, not content indexed, encrypted, and their mixtures
// with read only, hidden and system.
constexpr std::array<Range, 12> kFolderWords = {{
    {16, 23},
    {48, 55},
    {2064, 2071},
    {2096, 2103},
    {8208, 8211},
    {8240, 8248},
    {10256, 10259},
    {10288, 10295},
    {16400, 16403},
    {16432, 16435},
    {24592, 24595},
    {24624, 24627},
}};

}  // namespace

bool isFolderWord(std::uint32_t attributes) noexcept {
    for (const Range& range : kFolderWords) {
        if (attributes >= range.first && attributes <= range.last) return true;
    }
    return false;
}

bool WalkRules::isBarrier(std::string_view folder) const {
    return std::binary_search(barriers_.begin(), barriers_.end(), folder);
}

WalkRules::Entry WalkRules::mayEnter(const std::string& folder, std::uint64_t volume,
                                     std::uint64_t volumeAbove) const {
    if (isBarrier(std::string_view(folder).substr(0, folder.size() - 1))) return Entry::Barrier;
    // Only where a volume begins is there anything to ask.
    const bool isPseudo = volume != volumeAbove && files_.isPseudo(folder);
    return isPseudo ? Entry::PseudoFileSystem : Entry::Allowed;
}

}  // namespace corvalence::files
