#include "files/left_out_text.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "base/shown_text.h"

namespace corvalence::files {

namespace {

struct CountRow {
    std::uint64_t count;
    std::string_view text;
};

}  // namespace

std::string leftOutText(std::uint64_t failed, std::uint64_t ownFiles, const PassedOver& passedOver,
                        std::size_t most) {
    std::string text;
    for (const CountRow& row : std::initializer_list<CountRow>{
             {failed, " could not be added."},
             {passedOver.hiddenNames, " passed over: names that begin with a full stop."},
             {passedOver.links, " passed over: symbolic links."},
             {ownFiles, " passed over: the installation's own files."},
             {passedOver.pseudoFileSystems, " passed over: pseudo file systems."},
             {passedOver.unreadable.size(), " passed over: could not be read."}}) {
        if (row.count > 0) text += std::to_string(row.count).append(row.text) + "\n";
    }
    const std::size_t shown = std::min(most, passedOver.unreadable.size());
    for (std::size_t at = 0; at < shown; ++at) {
        const UnreadableEntry& entry = passedOver.unreadable[at];
        text += "  " + base::shown(entry.path) + "  Reason: " + entry.reason + "\n";
    }
    if (shown < passedOver.unreadable.size()) text += "  ...\n";
    return text;
}

}  // namespace corvalence::files
