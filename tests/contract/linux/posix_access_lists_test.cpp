#include <gtest/gtest.h>
#include <sys/acl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ostream>

#include "child_process.h"
#include "failure_of.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::platform {

/// For failed expectations.
inline void PrintTo(const AccessEntry& entry, std::ostream* out) {
    *out << entry.domain << ":" << entry.account << std::hex << " 0x" << entry.rights
         << (entry.isAdministrators ? " (administrators)" : "");
}

}  // namespace corvalence::platform

namespace corvalence::test {
namespace {

using platform::AccessEntry;
using platform::AccountState;
namespace access_right = platform::access_right;
using Entries = std::vector<AccessEntry>;

constexpr std::uint32_t kRead = 0x20089;
constexpr std::uint32_t kWrite = 0x20116;
constexpr std::uint32_t kExecute = 0x200A0;
constexpr std::uint32_t kOwner = 0xC0000;
constexpr std::uint32_t kFull = 0xF01FF;
constexpr std::uint32_t kDeleteBelow = 0x40;

AccessEntry entry(const char* domain, const char* account, std::uint32_t rights,
                  bool isAdministrators = false) {
    return {AccountState::Known, account, domain, rights, isAdministrators};
}

/// Files of user 0 or of one without a name, with lists of every form.
class AccessLists : public testing::Test {
  protected:
    void SetUp() override {
        if (!isRoot()) GTEST_SKIP() << "needs root, to have files of a known owner";
        file_ = folder_.write("a", "x");
    }
    bool setList(const std::string& path, acl_type_t type, const char* text) {
        const acl_t list = ::acl_from_text(text);
        const bool isSet = list != nullptr && ::acl_set_file(path.c_str(), type, list) == 0;
        ::acl_free(list);
        return isSet;
    }
    mode_t modeOf(const std::string& path) {
        struct stat data {};
        EXPECT_EQ(::stat(path.c_str(), &data), 0);
        return data.st_mode & ALLPERMS;
    }
    Entries read(const std::string& path) { return system_.accessLists.read(path).value(); }
    std::size_t strengthen(const std::string& path) {
        return system_.accessLists.removeEntries(path, [](const AccessEntry& each) {
            return !each.isAdministrators && (each.rights & kFull) != kFull;
        });
    }

    SystemBackEnd system_;
    TempFolder folder_;
    std::string file_;
};

TEST_F(AccessLists, tellOwnerGroupAndModeWithItsSpecialBits) {
    ASSERT_EQ(::chown(file_.c_str(), 4242, 2424), 0);
    ASSERT_EQ(::chmod(file_.c_str(), 06754), 0);
    EXPECT_EQ(read(file_), (Entries{entry("owner", "4242", kFull | access_right::kSetUserId),
                                    entry("group", "2424", kRead | kExecute | access_right::kSetGroupId),
                                    entry("other", "other", kRead)}));
    ASSERT_EQ(::chmod(folder_.path().c_str(), 01773), 0);
    EXPECT_EQ(read(folder_.path()),
              (Entries{entry("owner", "root", kFull, true),
                       entry("group", "root", kRead | kWrite | kExecute | kDeleteBelow),
                       entry("other", "other", kWrite | kExecute | kDeleteBelow | access_right::kSticky)}));
    ASSERT_EQ(::symlink(file_.c_str(), (folder_ / "link").c_str()), 0);
    EXPECT_EQ(read(folder_ / "link").front(), entry("owner", "root", kFull, true));
    EXPECT_EQ(causeOf([&] { read(folder_ / "none"); }), base::Cause::FileNotFound);
}

TEST_F(AccessLists, tellNamedEntriesAndWhatAFolderHandsDown) {
    const std::string folder = folder_.path();
    if (!setList(folder, ACL_TYPE_ACCESS, "u::rw-,u:4242:r--,u:daemon:-w-,g::---,g:2424:rwx,m::rw-,o::---") ||
        !setList(folder, ACL_TYPE_DEFAULT, "u::rwx,u:0:r--,g::r-x,m::r-x,o::---")) {
        GTEST_SKIP() << "no access lists here";
    }
    const std::uint32_t write = kWrite | kDeleteBelow;
    EXPECT_EQ(read(folder),
              (Entries{entry("owner", "root", kRead | write | kOwner, true), entry("user", "daemon", write),
                       entry("user", "4242", kRead), entry("group", "root", 0),
                       entry("named group", "2424", kRead | write | kExecute),
                       entry("mask", "mask", kRead | write), entry("other", "other", 0),
                       entry("default owner", "owner", kFull), entry("default user", "root", kRead, true),
                       entry("default group", "group", kRead | kExecute),
                       entry("default mask", "mask", kRead | kExecute), entry("default other", "other", 0)}));
}

TEST_F(AccessLists, tightenToTheOwnerOnceAndForAll) {
    ASSERT_EQ(::chown(file_.c_str(), 4242, 2424), 0);
    ASSERT_EQ(::chmod(file_.c_str(), 04775), 0);
    EXPECT_EQ(strengthen(file_), 2U);
    EXPECT_EQ(modeOf(file_), 04700U);
    EXPECT_EQ(strengthen(file_), 0U);
    ASSERT_EQ(::symlink(file_.c_str(), (folder_ / "link").c_str()), 0);
    EXPECT_EQ(causeOf([&] { strengthen(folder_ / "link"); }), base::Cause::InvalidFile);

    const std::string folder = folder_.path();
    if (!setList(folder, ACL_TYPE_ACCESS, "u::rwx,u:4242:rwx,g::r-x,g:2424:rwx,m::rwx,o::r-x") ||
        !setList(folder, ACL_TYPE_DEFAULT, "u::rwx,u:4242:r--,u:0:rwx,g::r-x,m::r-x,o::---")) {
        GTEST_SKIP() << "no access lists here";
    }
    EXPECT_EQ(strengthen(folder), 8U);
    EXPECT_EQ(
        read(folder),
        (Entries{entry("owner", "root", kFull, true), entry("group", "root", 0), entry("mask", "mask", 0),
                 entry("other", "other", 0), entry("default owner", "owner", kFull),
                 entry("default user", "root", kRead | kWrite | kExecute | kDeleteBelow, true),
                 entry("default group", "group", 0), entry("default mask", "mask", 0),
                 entry("default other", "other", 0)}));
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(strengthen(folder), 0U);
}

}  // namespace
}  // namespace corvalence::test
