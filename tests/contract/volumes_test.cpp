#include <gtest/gtest.h>

#include <algorithm>

#include "failure_of.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

TEST(Volumes, areWalkedFromRootsThatCanBeListed) {
    SystemBackEnd system;
    const TempFolder folder;
    const auto walk = system.volumes.walkRoots();
    const std::string here = system.volumes.rootOf(folder.path());
    EXPECT_EQ(std::count(walk.roots.begin(), walk.roots.end(), here), 1);
    for (const std::string& root : walk.roots) {
        EXPECT_EQ(system.volumes.rootOf(root), root);
        EXPECT_EQ(causeOf([&] { system.files.list(root); }), base::Cause::None) << root;
    }
    EXPECT_TRUE(std::is_sorted(walk.roots.begin(), walk.roots.end()));
    EXPECT_TRUE(std::is_sorted(walk.barriers.begin(), walk.barriers.end()));
    EXPECT_TRUE(system.volumes.keepsAccessLists(here));
    EXPECT_FALSE(system.volumes.keepsAccessLists(folder / "none"));
    EXPECT_FALSE(system.volumes.isFat(here));
    EXPECT_FALSE(system.volumes.isFat(folder / "none"));
}

}  // namespace
}  // namespace corvalence::test
