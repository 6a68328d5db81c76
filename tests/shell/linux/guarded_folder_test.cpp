#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/acl.h>
#include <sys/stat.h>

#include <filesystem>

#include "child_process.h"
#include "shell/folder_guard.h"
#include "world.h"

namespace corvalence::test {
namespace {

using shell::FolderState;
using shell::GuardResult;
using testing::ElementsAre;
using testing::IsEmpty;

/// The folder of a real installation, under the modes and lists of this system.
class GuardedFolder : public testing::Test {
  protected:
    GuardedFolder() { setMode(0700); }
    shell::FolderGuard guard() { return shell::FolderGuard(world.vault(), world.machine.system.accessLists); }
    FolderState state() { return guard().read().value(); }
    void setMode(mode_t mode) { EXPECT_EQ(::chmod(world.data("").c_str(), mode), 0); }
    mode_t mode() {
        struct stat data {};
        EXPECT_EQ(::stat(world.data("").c_str(), &data), 0);
        return data.st_mode & ALLPERMS;
    }
    bool setList(acl_type_t type, const char* text) {
        const acl_t list = ::acl_from_text(text);
        const bool isSet = list != nullptr && ::acl_set_file(world.data("").c_str(), type, list) == 0;
        ::acl_free(list);
        return isSet;
    }
    std::vector<std::string> words() {
        std::vector<std::string> all;
        for (const shell::GuardRow& row : state().rows)
            all.push_back((row.isWeak ? "! " : "") + row.domain + ": " + row.inWords());
        return all;
    }

    World world;
};

TEST_F(GuardedFolder, isToldInTheWordsOfModes) {
    EXPECT_THAT(words(), ElementsAre("owner: list, create, rename and remove, enter", "group: nothing",
                                     "other: nothing"));
    EXPECT_FALSE(state().isWeak());
    setMode(02751);
    EXPECT_THAT(words(), ElementsAre("owner: list, create, rename and remove, enter",
                                     "! group: list, enter; what is made in it gets its group (set-group-ID)",
                                     "! other: enter"));
    if (!setList(ACL_TYPE_ACCESS, "u::r-x,u:4242:rwx,g::---,m::r-x,o::---") ||
        !setList(ACL_TYPE_DEFAULT, "u::rwx,g::r-x,o::---")) {
        GTEST_SKIP() << "no access lists here";
    }
    EXPECT_THAT(words(),
                ElementsAre("owner: list, enter", "! user: list, create, rename and remove, enter",
                            "group: nothing; what is made in it gets its group (set-group-ID)",
                            "! mask: all but owner and others at the most: list, enter", "other: nothing",
                            "default owner: of what is made in it: list, create, rename and remove, enter",
                            "! default group: of what is made in it: list, enter",
                            "default other: of what is made in it: nothing"));
}

TEST_F(GuardedFolder, isStrengthenedToItsOwner) {
    setMode(0775);
    guard().accept(state());
    EXPECT_EQ(guard().strengthen().removed, 2U);
    EXPECT_EQ(mode(), 0700U);
    EXPECT_FALSE(state().isWeak());
    EXPECT_EQ(guard().check().result, GuardResult::Changed);
    guard().accept(state());
    EXPECT_EQ(guard().check().result, GuardResult::Same);
    EXPECT_EQ(guard().strengthen().removed, 0U);
    if (!setList(ACL_TYPE_ACCESS, "u::rwx,u:4242:rwx,g::r-x,m::rwx,o::---") ||
        !setList(ACL_TYPE_DEFAULT, "u::rwx,u:4242:r--,g::r-x,m::r-x,o::---")) {
        GTEST_SKIP() << "no access lists here";
    }
    EXPECT_EQ(guard().check().result, GuardResult::Changed);
    EXPECT_TRUE(state().isWeak());
    EXPECT_GT(guard().strengthen().removed, 0U);
    EXPECT_FALSE(state().isWeak());
    EXPECT_EQ(guard().strengthen().removed, 0U);
}

TEST_F(GuardedFolder, isTheOneThatALinkLeadsTo) {
    setMode(0775);
    const std::string link = world.machine.folder / "link";
    std::filesystem::create_directory_symlink(world.data(""), link);
    world.set("Install Directory", link + "/");
    EXPECT_EQ(state().rows.size(), 3U);
    EXPECT_TRUE(state().isWeak());
    EXPECT_EQ(guard().strengthen().failure, "");
    EXPECT_EQ(mode(), 0700U);
}

TEST_F(GuardedFolder, ofSomebodyElseIsNotStrengthened) {
    if (!isRoot()) GTEST_SKIP() << "needs root, to be somebody else";
    setMode(0777);
    EXPECT_EQ(::chmod(world.machine.folder.path().c_str(), 0755), 0);
    EXPECT_EQ(inChildAs(kNobody,
                        [&] {
                            const shell::Strengthening done = guard().strengthen();
                            return done.removed == 0 && !done.failure.empty() ? 0 : 1;
                        }),
              0);
    EXPECT_EQ(mode(), 0777U);
}

}  // namespace
}  // namespace corvalence::test
