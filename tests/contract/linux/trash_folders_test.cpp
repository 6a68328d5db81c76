#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "child_process.h"
#include "platform/linux/trash_folders.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using platform::RecycledItem;
using platform::linux_system::TrashFolders;
using Items = std::vector<RecycledItem>;

class Trash : public testing::Test {
  protected:
    /// Puts a thrown-away file with its record into a trash folder.
    void put(const std::string& trash, const std::string& name, const std::string& path) {
        folder_.write(trash + "/files/" + name, "x");
        folder_.write(trash + "/info/" + name + ".trashinfo",
                      "[Trash Info]\nPath=" + path + "\nDeletionDate=2024-02-29T12:30:05\n");
    }

    SystemBackEnd system_;
    TempFolder folder_;
    TrashFolders bin_{system_.files, [this] {
                          return platform::linux_system::TrashPlaces{{folder_ / "data/Trash"},
                                                                     {folder_ / "disk", folder_ / "none"}};
                      }};
};

TEST_F(Trash, listsHomesAndVolumesByOriginalPath) {
    EXPECT_TRUE(bin_.items().empty());
    put("data/Trash", "b", "/a/me/with%20blank%C3%A4%25%zz%4");
    put("data/Trash", "c.2", "/a/c");
    put("data/Trash", "c", "/a/c");
    folder_.write("data/Trash/files/d/inside", "x");
    folder_.write("data/Trash/info/d.trashinfo", "Path=/a/d/\r\n");
    put("disk/.Trash-1000", "e", "deep/e");
    put("disk/.Trash/1001", "f", "f");
    EXPECT_EQ(bin_.items(), (Items{{"/a/c", false},
                                   {"/a/c", false},
                                   {"/a/d", true},
                                   {"/a/me/with blank\xC3\xA4%%zz%4", false},
                                   {folder_ / "disk/deep/e", false},
                                   {folder_ / "disk/f", false}}));
}

TEST_F(Trash, passesOverWhatIsNoItem) {
    folder_.write("data/Trash/files/without record", "x");
    folder_.write("data/Trash/info/without file.trashinfo", "Path=/gone\n");
    put("data/Trash", "no path", "");
    put("data/Trash", "long", std::string(100'000, 'x'));
    put("disk/.Trash-me", "g", "g");
    put("disk/elsewhere", "h", "h");
    ASSERT_EQ(::symlink("elsewhere", (folder_ / "disk/.Trash-7").c_str()), 0);
    folder_.write("data/Trash/files/link", "x");
    ASSERT_EQ(::symlink((folder_ / "disk/elsewhere/info/h.trashinfo").c_str(),
                        (folder_ / "data/Trash/info/link.trashinfo").c_str()),
              0);
    EXPECT_EQ(bin_.items(), Items{});
}

TEST_F(Trash, ofOthersIsLeftOutWhereTheCallerMayNotReadIt) {
    put("data/Trash", "a", "/a");
    put("disk/.Trash-1000", "b", "b");
    ASSERT_EQ(::chmod((folder_ / "data").c_str(), 0700), 0);
    const auto work = [this] { return bin_.items() == Items{{folder_ / "disk/b", false}} ? 0 : 1; };
    if (!isRoot()) GTEST_SKIP() << "needs root, to be another user";
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
    EXPECT_EQ(inChildAs(kNobody, work), 0);
}

TEST(TrashPlaces, areTheHomesOfAllUsersAndTheRoots) {
    SystemBackEnd system;
    const auto places = platform::linux_system::trashPlaces(system.volumes);
    EXPECT_EQ(std::count(places.homes.begin(), places.homes.end(), "/root/.local/share/Trash"), 1);
    EXPECT_EQ(places.volumes, system.volumes.walkRoots().roots);
}

}  // namespace
}  // namespace corvalence::test
