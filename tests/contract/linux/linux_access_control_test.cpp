#include "platform/linux/linux_access_control.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <map>

#include "child_process.h"
#include "failure_of.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

using base::Cause;
namespace attribute = platform::attribute;

constexpr const char* kAccess = "system.posix_acl_access";

/// An access list as the kernel stores it, version 2: owner rw, user 1234 rwx, group r, mask rwx, others
/// nothing.
const std::string kList(
    "\x02\0\0\0\x01\0\x06\0\xFF\xFF\xFF\xFF\x02\0\x07\0\xD2\x04\0\0\x04\0\x04\0\xFF\xFF\xFF\xFF"
    "\x10\0\x07\0\xFF\xFF\xFF\xFF\x20\0\0\0\xFF\xFF\xFF\xFF",
    44);

/// The file capability "net_bind_service", permitted and effective, as the kernel stores it (revision 2).
const std::string kCapability("\x01\0\0\x02\0\x04\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20);

class Protection : public testing::Test {
  protected:
    Protection() { from_ = world_.folder.write("from", "changed"); }

    std::unique_ptr<platform::File> candidate() {
        auto file = world_.files.createNew(world_.folder / "to");
        file->write(base::bytesOf("original"));
        return file;
    }
    std::string to() const { return world_.folder / "to"; }
    struct stat statusOf(const std::string& path) {
        struct stat data {};
        EXPECT_EQ(::stat(path.c_str(), &data), 0) << path;
        return data;
    }
    mode_t modeOf(const std::string& path) { return statusOf(path).st_mode & ALLPERMS; }
    bool set(const std::string& path, const char* name, const std::string& value) {
        return ::setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
    }
    std::map<std::string, std::string> attributesOf(const std::string& path) {
        std::map<std::string, std::string> all;
        std::string names(10000, '\0');
        const ssize_t length = ::listxattr(path.c_str(), names.data(), names.size());
        for (ssize_t at = 0; at < length;) {
            const std::string name = names.c_str() + at;
            std::string value(70000, '\0');
            const ssize_t size = ::getxattr(path.c_str(), name.c_str(), value.data(), value.size());
            all[name] = value.substr(0, static_cast<std::size_t>(size));
            at += static_cast<ssize_t>(name.size()) + 1;
        }
        return all;
    }
    void expectSameProtection() {
        const struct stat a = statusOf(from_);
        const struct stat b = statusOf(to());
        EXPECT_EQ(a.st_uid, b.st_uid);
        EXPECT_EQ(a.st_gid, b.st_gid);
        EXPECT_EQ(a.st_mode, b.st_mode);
        EXPECT_EQ(attributesOf(from_), attributesOf(to()));
        EXPECT_EQ(world_.folder.read("to"), "original");
    }

    TestPlatform world_;
    std::string from_;
};

TEST_F(Protection, isCopiedWithOwnerSetIdBitsAndCapability) {
    if (!isRoot()) GTEST_SKIP() << "needs root";
    ASSERT_EQ(::chown(from_.c_str(), 1234, 2345), 0);
    ASSERT_TRUE(set(from_, "security.capability", kCapability));
    ASSERT_TRUE(set(from_, "trusted.label", "t"));
    ASSERT_EQ(::chmod(from_.c_str(), 06755), 0);
    ASSERT_EQ(attributesOf(from_).count("security.capability"), 1U);
    world_.access.copyProtection(from_, *candidate());
    expectSameProtection();
    EXPECT_EQ(modeOf(to()), 06755U);
}

TEST_F(Protection, isCopiedWithAccessListAndAttributesOfAnyLength) {
    if (!set(from_, "user.note", std::string("a\0b", 3))) GTEST_SKIP() << "no extended attributes here";
    ASSERT_TRUE(set(from_, "user.empty", ""));
    ASSERT_TRUE(set(from_, "user.long", std::string(2000, 'x')));
    ASSERT_TRUE(set(from_, kAccess, kList));
    ASSERT_EQ(::chmod(from_.c_str(), 0570), 0);
    world_.access.copyProtection(from_, *candidate());
    expectSameProtection();
    EXPECT_EQ(attributesOf(to()).size(), 4U);
}

TEST_F(Protection, isNotWhatTheFolderHandsDown) {
    ASSERT_EQ(::chmod(from_.c_str(), 0640), 0);
    if (!set(world_.folder.path(), "system.posix_acl_default", kList)) GTEST_SKIP() << "no access lists here";
    const auto file = candidate();
    ASSERT_EQ(attributesOf(to()).count(kAccess), 1U);
    EXPECT_EQ(modeOf(to()), 0600U);
    world_.access.copyProtection(from_, *file);
    expectSameProtection();
    EXPECT_EQ(attributesOf(to()).count(kAccess), 0U);
}

// A link put in the file's place once lent the restored file a stranger's owner and set-id bits.
TEST_F(Protection, comesFromNoLinkButFromFilesThatNobodyMayRead) {
    ASSERT_EQ(::symlink("from", (world_.folder / "link").c_str()), 0);
    ASSERT_EQ(::chmod(from_.c_str(), 0), 0);
    const auto work = [&] {
        world_.access.copyProtection(from_, *candidate());
        return modeOf(to()) == 0 ? 0 : 1;
    };
    if (isRoot()) {
        ASSERT_EQ(::chown(world_.folder.path().c_str(), kNobody, kNobody), 0);
        ASSERT_EQ(::chown(from_.c_str(), kNobody, kNobody), 0);
    }
    EXPECT_EQ(isRoot() ? inChildAs(kNobody, work) : inChild(work), 0);
    const auto file = world_.files.createNew(world_.folder / "x");
    EXPECT_EQ(causeOf([&] { world_.access.copyProtection(world_.folder / "link", *file); }),
              Cause::InvalidFile);
    EXPECT_EQ(causeOf([&] { world_.access.copyProtection(world_.folder / "none", *file); }),
              Cause::FileNotFound);
}

TEST_F(Protection, thatTheCallerMayNotGiveIsAFailure) {
    if (!isRoot()) GTEST_SKIP() << "needs root";
    struct Case {
        uid_t owner;
        gid_t group;
        mode_t mode;
        mode_t folder;
        bool hasCapability;
    };
    // In a folder that hands its group down only the set-group-id bit is out of reach, and it goes without a
    // word.
    for (const Case& c : {Case{0, kNobody, 0644, 0777, false}, Case{kNobody, 0, 0644, 0777, false},
                          Case{kNobody, 0, 02755, 02777, false}, Case{kNobody, kNobody, 0644, 0777, true}}) {
        ASSERT_EQ(::chmod(world_.folder.path().c_str(), c.folder), 0);
        ASSERT_EQ(::chown(from_.c_str(), c.owner, c.group), 0);
        ASSERT_EQ(::chmod(from_.c_str(), c.mode), 0);
        ASSERT_TRUE(!c.hasCapability || set(from_, "security.capability", kCapability));
        const auto work = [&] {
            const auto file = candidate();
            const auto cause = causeOf([&] { world_.access.copyProtection(from_, *file); });
            const bool isClosed = c.folder != 0777 || (modeOf(to()) & 0077) == 0;
            ::unlink(to().c_str());
            return cause == Cause::AccessDenied && isClosed ? 0 : 1;
        };
        EXPECT_EQ(inChildAs(kNobody, work), 0) << c.owner << ":" << c.group;
    }
}

TEST_F(Protection, setAttributesMovesTheOwnersWriteBitAlone) {
    const auto file = world_.files.openShared(from_);
    const auto modeAfter = [&](mode_t mode, std::uint32_t attributes) {
        EXPECT_EQ(::chmod(from_.c_str(), mode), 0);
        world_.access.setAttributes(*file, attributes);
        return modeOf(from_);
    };
    EXPECT_EQ(modeAfter(0464, attribute::kArchive | attribute::kHidden), 0664U);
    EXPECT_EQ(modeAfter(06755, attribute::kReadOnly), 06555U);
    EXPECT_EQ(modeAfter(0, 0), 0200U);
    if (isRoot()) {
        // Another's file is left alone where the attributes hold already.
        ASSERT_EQ(::chmod(from_.c_str(), 0644), 0);
        const auto work = [&] {
            world_.access.setAttributes(*file, attribute::kArchive);
            const auto cause = causeOf([&] { world_.access.setAttributes(*file, attribute::kReadOnly); });
            return cause == Cause::AccessDenied ? 0 : 1;
        };
        EXPECT_EQ(inChildAs(kNobody, work), 0);
    }
    if (!set(from_, kAccess, kList)) GTEST_SKIP() << "no access lists here";
    EXPECT_EQ(modeAfter(0670, attribute::kReadOnly), 0470U);
    EXPECT_EQ(attributesOf(from_)[kAccess].size(), kList.size());
}

}  // namespace
}  // namespace corvalence::test
