#include "components/directory_findings.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace corvalence::components {

namespace {
constexpr std::array<std::string_view, 4> kRecycleFolders = {"RECYCLED", "RECYCLER", "Recycler", "Recycled"};
constexpr std::size_t kRecycleOffset = 3;
constexpr std::size_t kShortPath = 11;
}  // namespace

bool isInRecycleFolder(std::string_view path) noexcept {
    if (path.size() <= kShortPath) return false;
    const std::string_view name = path.substr(kRecycleOffset, kRecycleFolders.front().size());
    return std::find(kRecycleFolders.begin(), kRecycleFolders.end(), name) != kRecycleFolders.end();
}

void DirectoryFindings::add(DirectoryChange change, std::string_view path) {
    paths_.add(path);
    changes_.push_back(change);
    ++counts_[static_cast<std::size_t>(change)];
    if (report_ != nullptr) tell(*report_, size() - 1);
}

void DirectoryFindings::tell(reports::ReportSink& report, std::size_t at) const {
    report.add({paths_[at], directoryCode(changes_[at]).code});
}

bool DirectoryFindings::dropPairs(platform::Progress& progress) {
    struct Pair {
        std::uint64_t added = 0;
        std::uint64_t removed = 0;
    };
    // The same path of the same class: what stands before the last letter of the code.
    std::unordered_map<std::string, Pair> pairs;
    const auto keyOf = [this](std::size_t at) {
        const std::string_view code = directoryCode(changes_[at]).code;
        return std::string(paths_[at]).append("\x7F").append(code.substr(0, code.size() - 1));
    };
    const auto letterOf = [this](std::size_t at) { return directoryCode(changes_[at]).code.back(); };
    for (std::size_t at = 0; at < size(); ++at) {
        if (progress.cancelled()) return false;
        if (letterOf(at) == 'A') ++pairs[keyOf(at)].added;
        if (letterOf(at) == 'R') ++pairs[keyOf(at)].removed;
    }
    dropped_.assign(size(), false);
    for (std::size_t at = 0; at < size(); ++at) {
        if (progress.cancelled()) return false;
        const char letter = letterOf(at);
        if (letter != 'A' && letter != 'R') continue;
        const Pair& pair = pairs[keyOf(at)];
        const std::uint64_t matches = letter == 'A' ? pair.removed : pair.added;
        std::uint64_t& count = counts_[static_cast<std::size_t>(changes_[at])];
        dropped_[at] = matches > 0;
        count -= std::min(count, matches);
    }
    return true;
}

std::vector<Count> DirectoryFindings::counts() const {
    std::vector<Count> counts;
    for (std::size_t at = 0; at < kDirectoryCodes.size(); ++at)
        counts.push_back({kDirectoryCodes[at].name, kDirectoryCodes[at].total, counts_[at]});
    return counts;
}

bool DirectoryFindings::write(reports::ReportSink& report, const std::function<bool()>& goesOn) const {
    if (report_ != nullptr) return true;
    for (std::size_t at = 0; at < size(); ++at) {
        if (!goesOn()) return false;
        if (dropped_.empty() || !dropped_[at]) tell(report, at);
    }
    return true;
}

}  // namespace corvalence::components
