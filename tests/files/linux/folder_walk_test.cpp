#include "files/folder_walk.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

#include "child_process.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

class Walk : public testing::Test {
  protected:
    files::PassedOver walk(const std::string& folder) {
        visited_.clear();
        files::FolderWalk walk(system_.files, system_.paths, false);
        walk.run(folder, [&](const std::string& path, const platform::FileStatus&) {
            visited_.push_back(path);
            return true;
        });
        return walk.passedOver();
    }
    bool hasVisited(const std::string& path) {
        return std::find(visited_.begin(), visited_.end(), path) != visited_.end();
    }

    TempFolder folder_;
    SystemBackEnd system_;
    std::vector<std::string> visited_;
};

TEST_F(Walk, tellsWhatItMayNotLookAtAndGoesOn) {
    folder_.write("closed/x", "");
    folder_.write("shut/y", "");
    folder_.write("z", "");
    ::chmod((folder_ / "closed").c_str(), 0444);
    ::chmod((folder_ / "shut").c_str(), 0111);
    const auto work = [&] {
        const auto unreadable = walk(folder_.path()).unreadable;
        if (visited_ != std::vector<std::string>{folder_ / "z"} || unreadable.size() != 2) return 1;
        const bool isTold =
            unreadable[0].path == folder_ / "shut/" && unreadable[1].path == folder_ / "closed/x";
        return isTold && unreadable[1].reason == "AccessDenied." ? 0 : 2;
    };
    EXPECT_EQ(isRoot() ? inChildAs(kNobody, work) : inChild(work), 0);
    EXPECT_EQ(walk(folder_ / "none").unreadable.at(0).reason, "FileNotFound.");
}

TEST_F(Walk, entersNoPseudoFileSystemButTheOneItStartsIn) {
    if (!system_.files.isPseudo("/dev/pts")) GTEST_SKIP() << "no terminals of their own here";
    EXPECT_GE(walk("/dev").pseudoFileSystems, 1U);
    EXPECT_TRUE(hasVisited("/dev/null"));
    EXPECT_FALSE(hasVisited("/dev/pts/ptmx"));
    EXPECT_EQ(walk("/dev/pts").pseudoFileSystems, 0U);
    EXPECT_TRUE(hasVisited("/dev/pts/ptmx"));
}

}  // namespace
}  // namespace corvalence::test
