#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>

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
        world_.system.files.createFolder(disk_);
        mountDisk();
    }
    void TearDown() override {
        while (::umount2(disk_.c_str(), MNT_DETACH) == 0) {
        }
    }
    void mountDisk(const char* type = "tmpfs", const std::string& options = "size=64k") {
        EXPECT_EQ(::mount("none", disk_.c_str(), type, 0, options.c_str()), 0);
    }

    TestPlatform world_;
    const std::string disk_ = world_.folder / "with blank\\and\ttab";
};

TEST_F(Mounts, aFullDiskIsToldAndTheOldStateKept) {
    SystemSettingsStore settings(world_.files, disk_ + "/settings.json");
    ASSERT_TRUE(settings.write("key", "old"));
    const std::string large(200'000, 'x');
    world_.folder.write("large", large);
    const auto failure = failureOf([&] {
        const auto source = world_.files.openShared(world_.folder / "large");
        const auto copy = world_.files.createNew(disk_ + "/new");
        platform::copyBytes(*source, *copy, source->size());
    });
    world_.files.remove(disk_ + "/new");
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->cause(), Cause::DiskFull);
    EXPECT_EQ(failure->path(), disk_ + "/new");
    EXPECT_FALSE(settings.write("key", large));
    EXPECT_EQ(settings.read("key"), "old");
    EXPECT_EQ(world_.files.list(disk_).size(), 1U);
}

TEST_F(Mounts, anotherVolumeIsToldFromOtherFailures) {
    const std::string from = world_.folder.write("a", "x");
    const auto replacing = failureOf([&] { world_.files.rename(from, disk_ + "/a"); });
    const auto sparing = failureOf([&] { world_.files.renameNew(from, disk_ + "/a"); });
    ASSERT_TRUE(replacing && sparing);
    EXPECT_TRUE(world_.files.isOtherVolume(*replacing) && world_.files.isOtherVolume(*sparing));
    EXPECT_FALSE(world_.files.isNameTaken(*sparing));
}

TEST_F(Mounts, areTheRootsOfVolumes) {
    auto& volumes = world_.system.volumes;
    world_.files.createFolder(disk_ + "/a/b");
    ASSERT_EQ(::symlink((disk_ + "/a").c_str(), (world_.folder / "link").c_str()), 0);
    for (const std::string& path : {disk_, disk_ + "/a/b", disk_ + "/none/at/all", world_.folder / "link/b"})
        EXPECT_EQ(volumes.rootOf(path), disk_) << path;
    EXPECT_NE(volumes.rootOf(world_.folder.path()), disk_);
    EXPECT_EQ(volumes.rootOf("/proc/self/status"), "/proc");
    EXPECT_EQ(volumes.driveType(disk_), DriveType::Fixed);
    EXPECT_EQ(volumes.driveType(world_.folder.path()), DriveType::Unknown);

    // The upper of two mounts on one folder counts.
    const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    if (device < 0) GTEST_SKIP() << "no user-space file systems here";
    mountDisk("fuse.sshfs", "fd=" + std::to_string(device) + ",rootmode=40000,user_id=0,group_id=0");
    EXPECT_EQ(volumes.driveType(disk_), DriveType::Remote);
    mountDisk();
    EXPECT_EQ(volumes.driveType(disk_), DriveType::Fixed);
    EXPECT_EQ(volumes.rootOf(disk_ + "/x"), disk_);
    ::close(device);
}

TEST_F(Mounts, withFilesAreRootsAndNoWalkGoesFromOneIntoAnother) {
    const auto walkFrom = [this] { return world_.system.volumes.walkRoots(); };
    const auto counts = [](const std::vector<std::string>& paths, const std::string& path) {
        return std::count(paths.begin(), paths.end(), path);
    };
    world_.files.createFolder(disk_ + "/inner");
    ASSERT_EQ(::mount("none", (disk_ + "/inner").c_str(), "tmpfs", 0, ""), 0);
    auto walk = walkFrom();
    EXPECT_EQ(walk.roots.front(), "/");
    EXPECT_EQ(counts(walk.barriers, "/"), 0);
    for (const std::string& each : {disk_, disk_ + "/inner"}) {
        EXPECT_EQ(counts(walk.roots, each), 1) << each;
        EXPECT_EQ(counts(walk.barriers, each), 1) << each;
    }
    EXPECT_EQ(counts(walk.roots, "/proc"), 0);
    EXPECT_EQ(counts(walk.barriers, "/proc"), 1);
    EXPECT_TRUE(world_.system.volumes.keepsAccessLists(disk_));
    EXPECT_FALSE(world_.system.volumes.keepsAccessLists("/proc"));

    // What another mount covers is no root, and two on one folder are one.
    mountDisk();
    walk = walkFrom();
    EXPECT_EQ(counts(walk.roots, disk_), 1);
    EXPECT_EQ(counts(walk.roots, disk_ + "/inner") + counts(walk.barriers, disk_ + "/inner"), 0);
    // A mounted file is an entry of its folder.
    const std::string file = world_.folder.write("mounted", "x");
    ASSERT_EQ(::mount(file.c_str(), file.c_str(), nullptr, MS_BIND, nullptr), 0);
    walk = walkFrom();
    EXPECT_EQ(counts(walk.roots, file) + counts(walk.barriers, file), 0);
    ::umount2(file.c_str(), MNT_DETACH);
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
