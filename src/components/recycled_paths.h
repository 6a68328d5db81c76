#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/component_check.h"
#include "platform/recycle_bin.h"
#include "store/vault.h"

namespace corvalence::components {

/// What lies in the Recycle Bin at one moment, as far as walks go: all of it, or what was below the folders
/// that they are limited to.
class RecycledPaths {
  public:
    /// `whole`: a path counts as recycled where it or a folder above it was thrown away; otherwise wherever
    /// it begins with the path of something that was. `progress` is asked for every item; not all are known
    /// where the user wants the work to stop.
    RecycledPaths(platform::RecycleBin& bin, const WalkPlan& plan, const base::PathRules& paths, bool whole,
                  platform::Progress& progress);

    const std::vector<platform::RecycledItem>& items() const noexcept { return items_; }
    /// By a file's path, or a folder's with a closing separator.
    bool has(std::string_view path) const;
    /// Why the bin could not be listed; it counts as empty then.
    const std::optional<files::UnreadableEntry>& fault() const noexcept { return fault_; }

  private:
    std::string keyOf(std::string_view path) const;

    const base::PathRules& paths_;
    bool whole_;
    std::vector<platform::RecycledItem> items_;
    std::vector<std::string> beginnings_;  // sorted; none begins with another
    std::optional<files::UnreadableEntry> fault_;
};

/// Says that the bin could not be listed, if so.
void addRemark(std::vector<Remark>& remarks, const RecycledPaths& recycled);

}  // namespace corvalence::components
