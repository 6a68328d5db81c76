#include "components/walk_plan.h"

#include <algorithm>
#include <sstream>

namespace corvalence::components {

namespace {

/// The folders of the setting with closing separators; one that lies below another would be walked twice and
/// is left out.
std::vector<std::string> limits(const store::Vault& vault) {
    const base::PathRules& paths = vault.platform.paths;
    std::istringstream lines(vault.configuration.stored(settings::key::kWalkRoots).value_or(""));
    std::vector<std::string> folders;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) folders.push_back(paths.withSeparator(line));
    }
    std::sort(folders.begin(), folders.end());
    std::vector<std::string> outermost;
    for (std::string& folder : folders) {
        if (outermost.empty() || !paths.beginsWith(folder, outermost.back()))
            outermost.push_back(std::move(folder));
    }
    return outermost;
}

}  // namespace

std::optional<std::size_t> WalkPlan::rootOf(std::string_view path, const base::PathRules& paths) const {
    std::optional<std::size_t> longest;
    for (std::size_t at = 0; at < roots.size(); ++at) {
        const std::string& root = roots[at];
        if (path.size() > root.size() && (!longest || root.size() > roots[*longest].size()) &&
            paths.beginsWith(path, root)) {
            longest = at;
        }
    }
    return longest;
}

WalkPlan planWalk(const store::Vault& vault) {
    const base::PathRules& paths = vault.platform.paths;
    platform::WalkRoots machine = vault.platform.volumes.walkRoots();
    const auto folders = limits(vault);
    WalkPlan plan;
    plan.isLimited = !folders.empty();
    plan.roots = folders;
    for (const std::string& root : machine.roots) {
        const std::string volume = paths.withSeparator(root);
        const bool isWalked =
            !plan.isLimited || std::any_of(folders.begin(), folders.end(), [&](const std::string& folder) {
                return volume.size() > folder.size() && paths.beginsWith(volume, folder);
            });
        if (isWalked) plan.roots.push_back(volume);
    }
    std::sort(plan.roots.begin(), plan.roots.end());
    plan.barriers = std::move(machine.barriers);
    return plan;
}

}  // namespace corvalence::components
