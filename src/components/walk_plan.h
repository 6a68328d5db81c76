#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/vault.h"

namespace corvalence::components {

/// Where walks over the machine go: its volumes, or the folders of the setting Walk Roots with the volumes
/// below them. The same for creation and check as long as the machine and the setting are.
struct WalkPlan {
    /// With closing separators, in the order of the walk; none lies below another without being a volume.
    std::vector<std::string> roots;
    /// Folders that are not entered on the way, without closing separators, by their bytes.
    std::vector<std::string> barriers;
    bool isLimited = false;  // by the setting

    /// The longest root that `path` lies below, by its number. A root itself lies below none but a shorter
    /// one.
    std::optional<std::size_t> rootOf(std::string_view path, const base::PathRules& paths) const;
};

WalkPlan planWalk(const store::Vault& vault);

}  // namespace corvalence::components
