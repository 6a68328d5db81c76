#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/acl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "baseline_world.h"
#include "child_process.h"

namespace corvalence::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A permissions database of three files, of the lists that they really have.
class PermissionLists : public testing::Test, public BaselineWorld {
  protected:
    PermissionLists() : BaselineWorld(store::DatabaseKind::Permissions) {
        for (const char* name : {"a", "b", "c"})
            world.write(name, "x");
        makeFolder("folder");
        ::chmod(at("a"), 0644);
    }
    const char* at(const std::string& name) { return (path_ = world.path(name)).c_str(); }
    bool setList(const std::string& name, acl_type_t type, const char* text) {
        const acl_t list = ::acl_from_text(text);
        const bool isSet = list != nullptr && ::acl_set_file(at(name), type, list) == 0;
        ::acl_free(list);
        return isSet;
    }
    /// The second line of the only change, told as a log does.
    std::string toldNow() {
        EXPECT_THAT(check().lines, testing::SizeIs(2));
        const auto file = reports::ReportFile::open(
            world.vault(), reports::reportPath(world.configuration(), reports::ReportKind::Permissions));
        return kind.makeRenderer(world.platform.paths)->text(1, file->lines().at(1));
    }

  private:
    std::string path_;
};

TEST_F(PermissionLists, AreToldWhereModeBitsOrEntriesChange) {
    create();
    EXPECT_THAT(check().lines, IsEmpty());
    for (const auto& [bits, told] :
         std::map<mode_t, std::string>{{04644, "Set User ID\n"},
                                       {02644, "Set Group ID\n"},
                                       {01644, "Sticky\n"},
                                       {0646, "Domain: other\nPermissions: \nList Folder\nCreate Files\n"}}) {
        ASSERT_EQ(::chmod(at("a"), bits), 0);
        EXPECT_THAT(toldNow(), HasSubstr(told)) << std::oct << bits;
    }
    ASSERT_EQ(::chmod(at("a"), 0644), 0);
    EXPECT_THAT(check().lines, IsEmpty());
    if (!setList("b", ACL_TYPE_ACCESS, "u::rw-,u:4242:r--,g::---,m::r--,o::---"))
        GTEST_SKIP() << "no access lists here";
    EXPECT_THAT(toldNow(), HasSubstr("\nAccount: 4242\nDomain: user\nPermissions: \nList Folder\nRead\n"));
}

TEST_F(PermissionLists, AreToldWhereOwnersChange) {
    if (!isRoot()) GTEST_SKIP() << "needs root, to give files away";
    create();
    ASSERT_EQ(::lchown(at("a"), 4242, 2424), 0);
    EXPECT_THAT(toldNow(), testing::AllOf(HasSubstr("Account: 4242\nDomain: owner\n"),
                                          HasSubstr("Account: 2424\nDomain: group\n")));
}

TEST_F(PermissionLists, OfFoldersWithWhatTheyHandDownAreToldWhereWalksAreComplete) {
    world.set(settings::key::kCompleteWalk, "1");
    EXPECT_EQ(create().counts, (std::map<std::string, std::uint64_t>{{"permissions", 4}}));
    if (!setList("folder", ACL_TYPE_DEFAULT, "u::rwx,u:4242:r--,g::r-x,m::r-x,o::---"))
        GTEST_SKIP() << "no access lists here";
    EXPECT_THAT(check().lines, ElementsAre("Cf folder/", "Ct folder/"));
    EXPECT_THAT(toldNow(), HasSubstr("Account: 4242\nDomain: default user\n"));
    ::rmdir(at("folder"));
    ASSERT_EQ(::symlink("/", at("folder")), 0);
    EXPECT_THAT(toldNow(), testing::Not(HasSubstr("default")));
}

}  // namespace
}  // namespace corvalence::test
