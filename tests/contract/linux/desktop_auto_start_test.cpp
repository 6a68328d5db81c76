#include "platform/linux/desktop_auto_start.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "test_platform.h"

namespace corvalence::test {
namespace {

TEST(DesktopAutoStart, isAnEntryThatStartsTheProgramUntilItIsGone) {
    TestPlatform world;
    platform::linux_system::DesktopAutoStart start(world.files, world.folder / "config/autostart");
    EXPECT_FALSE(start.isEnabled());
    EXPECT_TRUE(start.disable());
    EXPECT_TRUE(start.enable("/opt/a b/corvalence"));
    EXPECT_TRUE(start.enable("/opt/$a\"b\\c%d/corvalence"));
    EXPECT_TRUE(start.isEnabled());
    EXPECT_THAT(world.folder.read("config/autostart/corvalence.desktop"),
                testing::EndsWith("\nExec=\"/opt/\\\\$a\\\\\"b\\\\\\\\c%%d/corvalence\" /Background\n"));
    EXPECT_FALSE(start.enable("/opt/a\nb"));
    world.faults.failAt(1, base::Cause::DiskFull, FaultPlan::Lasts::FromThere);
    EXPECT_FALSE(start.enable("/opt/corvalence"));
    world.faults.clear();
    EXPECT_TRUE(start.isEnabled());
    EXPECT_TRUE(start.disable());
    EXPECT_FALSE(start.isEnabled());
}

}  // namespace
}  // namespace corvalence::test
