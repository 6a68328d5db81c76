#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include "child_process.h"
#include "failure_of.h"
#include "platform/file_copy.h"
#include "platform/linux/mount_table.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

using base::Cause;
using platform::DriveType;

/// A test that mounts file systems which nobody else sees, and which go with it.
class Mounts : public testing::Test {
  protected:
    void SetUp() override {
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
            GTEST_SKIP() << "mounting is not allowed here";
        }
    }
    void TearDown() override {
        for (auto place = places_.rbegin(); place != places_.rend(); ++place)
            ::umount2(place->c_str(), MNT_DETACH);
    }
    std::string mountAt(const std::string& name, const char* type, const char* options,
                        unsigned long flags = 0) {
        const std::string place = world_.folder / name;
        world_.system.files.createFolder(place);
        EXPECT_EQ(::mount("none", place.c_str(), type, flags, options), 0) << name;
        places_.push_back(place);
        return place;
    }

    TestPlatform world_;

  private:
    std::vector<std::string> places_;
};

TEST_F(Mounts, aFullDiskIsToldAndTheOldStateKept) {
    const std::string disk = mountAt("disk", "tmpfs", "size=64k,mode=0700") + "/";
    world_.folder.write("disk/database", "old");
    SystemSettingsStore settings(world_.files, disk + "settings.json");
    ASSERT_TRUE(settings.write("key", "old"));
    world_.folder.write("large", std::string(200'000, 'x'));

    const auto failure = failureOf(
        [&] { platform::copyWhole(world_.files, world_.folder / "large", disk + "database", disk + "new"); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->cause(), Cause::DiskFull);
    EXPECT_EQ(failure->path(), disk + "new");
    EXPECT_EQ(failure->systemError(), ENOSPC);
    EXPECT_EQ(world_.folder.read("disk/database"), "old");
    EXPECT_FALSE(world_.folder.has("disk/new"));
    EXPECT_FALSE(settings.write("key", std::string(200'000, 'x')));
    EXPECT_EQ(settings.read("key"), "old");
    EXPECT_FALSE(world_.folder.has("disk/settings.json.new"));
}

TEST_F(Mounts, aReadOnlyDiskRefusesChanges) {
    const std::string disk = mountAt("disk", "tmpfs", "size=64k") + "/";
    world_.folder.write("disk/a", "x");
    ASSERT_EQ(::mount("none", (disk + ".").c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(causeOf([&] { world_.files.createNew(disk + "b"); }), Cause::AccessDenied);
    EXPECT_EQ(causeOf([&] { world_.files.openExclusive(disk + "a"); }), Cause::AccessDenied);
    EXPECT_EQ(causeOf([&] { world_.files.remove(disk + "a"); }), Cause::AccessDenied);
    world_.files.createFolder(disk);
}

TEST_F(Mounts, anotherVolumeIsToldFromOtherFailures) {
    const std::string disk = mountAt("disk", "tmpfs", "size=64k") + "/";
    world_.folder.write("a", "x");
    for (const bool isNew : {false, true}) {
        const auto failure = failureOf([&] {
            if (isNew) {
                world_.files.renameNew(world_.folder / "a", disk + "a");
            } else {
                world_.files.rename(world_.folder / "a", disk + "a");
            }
        });
        ASSERT_TRUE(failure);
        EXPECT_TRUE(world_.files.isOtherVolume(*failure));
        EXPECT_FALSE(world_.files.isNameTaken(*failure));
        EXPECT_EQ(failure->cause(), Cause::Generic);
    }
    EXPECT_EQ(world_.folder.read("a"), "x");
}

TEST_F(Mounts, areTheRootsOfVolumes) {
    auto& volumes = world_.system.volumes;
    const std::string disk = mountAt("with blank\\and\ttab", "tmpfs", "size=64k");
    world_.folder.write("with blank\\and\ttab/a/b", "x");
    EXPECT_EQ(volumes.rootOf(disk), disk);
    EXPECT_EQ(volumes.rootOf(disk + "/a/b"), disk);
    EXPECT_EQ(volumes.rootOf(disk + "/none/at/all"), disk);
    ASSERT_EQ(::symlink((disk + "/a").c_str(), (world_.folder / "link").c_str()), 0);
    EXPECT_EQ(volumes.rootOf(world_.folder / "link/b"), disk);
    EXPECT_NE(volumes.rootOf(world_.folder.path()), disk);
    EXPECT_EQ(volumes.rootOf("/proc/self/status"), "/proc");
    EXPECT_EQ(volumes.driveType(disk), DriveType::Fixed);
    EXPECT_EQ(volumes.driveType(world_.folder.path()), DriveType::Unknown);
    EXPECT_EQ(volumes.driveType("/"), DriveType::Fixed);

    // The upper of two mounts on one folder counts.
    const std::string inner = mountAt("disk", "tmpfs", "size=64k");
    EXPECT_EQ(volumes.rootOf(inner + "/x"), inner);
}

TEST_F(Mounts, ofANetworkFileSystemAreRemote) {
    const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    if (device < 0) GTEST_SKIP() << "no user-space file systems here";
    const std::string options = "fd=" + std::to_string(device) + ",rootmode=40000,user_id=0,group_id=0";
    const std::string place = mountAt("net", "fuse.sshfs", options.c_str());
    EXPECT_EQ(world_.system.volumes.driveType(place), DriveType::Remote);
    const std::string other = mountAt("local", "tmpfs", "size=64k");
    EXPECT_EQ(world_.system.volumes.driveType(other), DriveType::Fixed);
    ::close(device);
}

TEST(MountTable, takesTheKernelsLinesAndLeavesOthersOut) {
    const auto mounts = platform::linux_system::parseMounts(
        "22 27 0:20 / /sys rw,nosuid shared:7 master:1 - sysfs sysfs rw\n"
        "36 35 98:0 /mnt1 /with\\040blank\\134\\011x rw,noatime - ext3 /dev/root\\040a rw,errors=continue\n"
        "broken\n"
        "x 35 98:0 / /y rw - ext3 /dev/root rw\n"
        "37 35 98:0 / /z rw shared:1\n"
        "38 35 0:99 / /x\\089\\04 rw -  none rw\n");
    ASSERT_EQ(mounts.size(), 3U);
    EXPECT_EQ(mounts[0].id, 22U);
    EXPECT_EQ(mounts[0].type, "sysfs");
    EXPECT_EQ(mounts[1].point, "/with blank\\\tx");
    EXPECT_EQ(mounts[1].device, "98:0");
    EXPECT_EQ(mounts[1].source, "/dev/root a");
    EXPECT_EQ(mounts[2].point, "/x\\089\\04");
}

}  // namespace
}  // namespace corvalence::test
