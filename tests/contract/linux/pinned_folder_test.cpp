#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "child_process.h"
#include "failure_of.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

using base::Cause;

class PinnedFolders : public testing::Test {
  protected:
    void link(const std::string& target, const std::string& name) {
        ASSERT_EQ(::symlink(target.c_str(), (folder_ / name).c_str()), 0) << name;
    }
    /// The resolved path below the test's folder at which a file is found to stand.
    std::string placeOf(const std::string& path) {
        std::string name;
        const auto pinned = access_.pinFolderOf(path, name);
        const std::string& resolved = pinned->resolvedPath();
        EXPECT_EQ(resolved.back(), '/');
        EXPECT_EQ(pinned->path().back(), '/');
        EXPECT_TRUE(std::filesystem::equivalent(pinned->path(), resolved)) << resolved;
        return resolved.find(folder_.path()) == 0 ? resolved.substr(folder_.path().size()) + name
                                                  : resolved + name;
    }
    Cause refusal(const std::string& path) {
        std::string name;
        return causeOf([&] { access_.pinFolderOf(path, name); });
    }

    TestPlatform world_;
    TempFolder& folder_ = world_.folder;
    platform::AccessControl& access_ = world_.access;
};

TEST_F(PinnedFolders, areFoundThroughLinksOfEveryKind) {
    folder_.write("real/deep/file", "x");
    link("real", "short");
    link(folder_ / "real/deep", "absolute");
    link("short/deep/../deep/./file", "chain");
    link("../../absolute/new", "real/deep/dangling");
    for (const char* name : {"real/deep/file", "short/deep/file", "absolute/file", "chain"})
        EXPECT_EQ(placeOf(folder_ / name), "real/deep/file") << name;
    EXPECT_EQ(placeOf(folder_ / "real/deep/dangling"), "real/deep/new");
    EXPECT_EQ(placeOf(folder_ / "short/missing"), "real/missing");
    EXPECT_EQ(placeOf(folder_ / "short/.././/real/x"), "real/x");
    EXPECT_EQ(placeOf("/../../etc"), "/etc");
}

TEST_F(PinnedFolders, areRefusedWhereTheWayDoesNotLeadToAFile) {
    folder_.write("file", "x");
    folder_.write("folder/x", "x");
    link("a", "a");
    link("../a", "folder/toCircle");
    link("/", "top");
    const std::pair<const char*, Cause> kRefusals[] = {
        {"none/file", Cause::FileNotFound},  {"none/../file", Cause::FileNotFound},
        {"file/x", Cause::BadPath},          {"file/../x", Cause::BadPath},
        {"folder/toCircle", Cause::BadPath}, {"top", Cause::InvalidFile},
        {"folder/", Cause::InvalidFile},     {"folder/..", Cause::InvalidFile}};
    for (const auto& [name, cause] : kRefusals)
        EXPECT_EQ(refusal(folder_ / name), cause) << name;
    EXPECT_EQ(refusal("/"), Cause::InvalidFile);
    EXPECT_EQ(refusal(folder_ / std::string("fi\0le", 5)), Cause::BadPath);
}

TEST_F(PinnedFolders, areRefusedThroughALinkOfSomebodyElse) {
    if (!isRoot()) GTEST_SKIP() << "needs root";
    folder_.write("real/file", "x");
    const auto linkOf = [&](uid_t user, const char* target, const char* name) {
        link(target, name);
        ASSERT_EQ(::lchown((folder_ / name).c_str(), user, user), 0);
    };
    linkOf(1234, "real", "onTheWay");
    linkOf(1234, "real/file", "last");
    linkOf(0, "onTheWay/file", "indirect");
    linkOf(0, "real/file", "ofRoot");
    linkOf(kNobody, "real", "ofTheCaller");
    for (const char* name : {"onTheWay/file", "last", "indirect", "ofTheCaller/file"})
        EXPECT_EQ(refusal(folder_ / name), Cause::AccessDenied) << name;
    const auto work = [&] {
        if (placeOf(folder_ / "ofTheCaller/file") != "real/file") return 1;
        if (placeOf(folder_ / "ofRoot") != "real/file") return 2;
        return refusal(folder_ / "onTheWay/file") == Cause::AccessDenied ? 0 : 3;
    };
    EXPECT_EQ(inChildAs(kNobody, work), 0);
}

TEST_F(PinnedFolders, stayTheSameWhenNamesAreSwappedBehindThem) {
    folder_.write("victim/keep", "precious");
    folder_.write("work/file", "old");
    std::string name;
    const auto pinned = access_.pinFolderOf(folder_ / "work/file", name);
    ASSERT_EQ(::rename((folder_ / "work").c_str(), (folder_ / "moved").c_str()), 0);
    link("victim", "work");

    world_.files.createNew(pinned->path() + "candidate")->write(base::bytesOf("new"));
    world_.files.rename(pinned->path() + "candidate", pinned->path() + name);
    EXPECT_TRUE(world_.files.renameNew(pinned->path() + name, pinned->path() + "file.CHANGED"));
    EXPECT_EQ(folder_.read("moved/file.CHANGED"), "new");
    EXPECT_FALSE(folder_.has("victim/candidate"));
    EXPECT_EQ(folder_.read("victim/keep"), "precious");
    EXPECT_EQ(world_.files.list(pinned->path()).size(), 1U);
    EXPECT_EQ(pinned->resolvedPath(), folder_ / "work/");
}

}  // namespace
}  // namespace corvalence::test
