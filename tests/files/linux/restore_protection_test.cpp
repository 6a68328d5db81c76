#include "files/restore.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <filesystem>

#include "listed_file.h"
#include "world.h"

namespace corvalence::test {
namespace {

namespace fs = std::filesystem;

struct stat statusOf(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

TEST(FileRestore, PutsTheContentBackAndKeepsOwnerModeAndAttributes) {
    World world;
    const std::string path = listFile(world, "a", "one");
    world.write("a", "two");
    chmod(path.c_str(), 04751);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(path.c_str(), 1234, 4321), 0);
        chmod(path.c_str(), 04751);
    }
    const bool hasAttributes = setxattr(path.c_str(), "user.origin", "here", 4, 0) == 0;

    const auto result = world.restore("a");
    EXPECT_EQ(result.message, path + " successfully restored.");
    EXPECT_EQ(world.read("a"), "one");
    const struct stat now = statusOf(path);
    EXPECT_EQ(now.st_mode & 07777, 04751U);
    if (geteuid() == 0) {
        EXPECT_EQ(now.st_uid, 1234U);
        EXPECT_EQ(now.st_gid, 4321U);
    }
    if (hasAttributes) {
        char value[8] = {};
        EXPECT_EQ(getxattr(path.c_str(), "user.origin", value, sizeof value), 4);
    }
    EXPECT_TRUE(world.leftovers().empty());
    EXPECT_TRUE(fs::is_empty(world.data("Changed Files")));
}

TEST(FileRestore, SetsTheOwnersWriteBitAsRecorded) {
    World world;
    const std::string path = world.write("a", "one");
    chmod(path.c_str(), 0444);
    world.create();
    world.add({"a"});
    chmod(path.c_str(), 0664);
    world.write("a", "two");
    world.restore("a");
    EXPECT_EQ(statusOf(path).st_mode & 07777, 0464U);
}

TEST(FileRestore, WritesThroughNoLinkOfAStranger) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the administrator can make a link that belongs to somebody else";
    World world;
    world.write("real/a", "one");
    fs::create_directory_symlink("real", world.path("way"));
    world.create();
    world.add({"way/a"});
    world.write("real/a", "two");
    EXPECT_TRUE(world.restore("way/a").restored);  // the administrator's own link
    world.write("real/a", "two");
    ASSERT_EQ(lchown(world.path("way").c_str(), 1234, 1234), 0);
    const auto result = world.restore("way/a");
    EXPECT_FALSE(result.restored);
    EXPECT_EQ(result.message.substr(0, 16), "Couldn't restore");
    EXPECT_EQ(world.read("real/a"), "two");
}

}  // namespace
}  // namespace corvalence::test
