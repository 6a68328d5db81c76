#include "components/recycled_paths.h"

#include <algorithm>

namespace corvalence::components {

RecycledPaths::RecycledPaths(platform::RecycleBin& bin, const WalkPlan& plan, const base::PathRules& paths,
                             bool whole, platform::Progress& progress)
    : paths_(paths), whole_(whole) {
    try {
        items_ = bin.items();
    } catch (const base::FileFailure& failure) {
        fault_ = files::UnreadableEntry{failure.path(), std::string(failure.reason())};
    }
    std::erase_if(items_, [&](const platform::RecycledItem& item) {
        return progress.cancelled() || item.originalPath.empty() ||
               (plan.isLimited && !plan.rootOf(item.originalPath, paths));
    });
    std::vector<std::string> all;
    for (const platform::RecycledItem& item : items_)
        all.push_back(keyOf(item.originalPath));
    std::sort(all.begin(), all.end());
    for (std::string& key : all) {
        if (beginnings_.empty() || !key.starts_with(beginnings_.back()))
            beginnings_.push_back(std::move(key));
    }
}

bool RecycledPaths::has(std::string_view path) const {
    const std::string key = keyOf(path);
    // As none begins with another, only the last that is not behind the key can be its beginning.
    const auto behind = std::upper_bound(beginnings_.begin(), beginnings_.end(), key);
    return behind != beginnings_.begin() && key.starts_with(*std::prev(behind));
}

std::string RecycledPaths::keyOf(std::string_view path) const {
    return whole_ ? paths_.withSeparator(path) : std::string(path);
}

void addRemark(std::vector<Remark>& remarks, const RecycledPaths& recycled) {
    if (recycled.fault())
        remarks.push_back({"recycle_bin", 1, " Recycle Bin could not be listed.", {*recycled.fault()}, true});
}

}  // namespace corvalence::components
