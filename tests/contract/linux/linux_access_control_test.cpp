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

/// An access list as the kernel stores it: version 2, then tag, rights and id of each entry.
std::string accessList(std::initializer_list<std::array<std::uint32_t, 3>> entries) {
    std::string bytes("\x02\0\0\0", 4);
    const auto append = [&](std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i)
            bytes.push_back(static_cast<char>(value >> (8 * i)));
    };
    for (const auto& [tag, rights, id] : entries) {
        append(tag, 2);
        append(rights, 2);
        append(id, 4);
    }
    return bytes;
}

constexpr std::uint32_t kNoId = 0xFFFF'FFFF;
constexpr const char* kAccess = "system.posix_acl_access";

/// Owner rw, user 1234 rwx, group r, mask rwx, others nothing.
std::string sampleList() {
    return accessList({{1, 6, kNoId}, {2, 7, 1234}, {4, 4, kNoId}, {16, 7, kNoId}, {32, 0, kNoId}});
}

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
    const auto file = candidate();
    world_.access.copyProtection(from_, *file);
    expectSameProtection();
    EXPECT_EQ(modeOf(to()), 06755U);
}

TEST_F(Protection, isCopiedWithAccessListAndAttributesOfAnyLength) {
    if (!set(from_, "user.note", std::string("a\0b", 3))) GTEST_SKIP() << "no extended attributes here";
    ASSERT_TRUE(set(from_, "user.empty", ""));
    ASSERT_TRUE(set(from_, "user.long", std::string(2000, 'x')));
    ASSERT_TRUE(set(from_, kAccess, sampleList()));
    ASSERT_EQ(::chmod(from_.c_str(), 0570), 0);
    const auto file = candidate();
    world_.access.copyProtection(from_, *file);
    expectSameProtection();
    EXPECT_EQ(attributesOf(to()).size(), 4U);
}

TEST_F(Protection, isNotWhatTheFolderHandsDown) {
    const auto list =
        accessList({{1, 7, kNoId}, {2, 7, 1234}, {4, 7, kNoId}, {16, 7, kNoId}, {32, 7, kNoId}});
    ASSERT_EQ(::chmod(from_.c_str(), 0640), 0);
    if (!set(world_.folder.path(), "system.posix_acl_default", list)) GTEST_SKIP() << "no access lists here";
    const auto file = candidate();
    ASSERT_EQ(attributesOf(to()).count(kAccess), 1U);
    EXPECT_EQ(modeOf(to()), 0600U);
    world_.access.copyProtection(from_, *file);
    expectSameProtection();
    EXPECT_EQ(attributesOf(to()).count(kAccess), 0U);
}

TEST_F(Protection, comesFromWhatALinkLeadsToAndFromFilesThatNobodyMayRead) {
    ASSERT_EQ(::symlink("from", (world_.folder / "link").c_str()), 0);
    ASSERT_EQ(::chmod(from_.c_str(), 0), 0);
    const auto work = [&] {
        const auto file = candidate();
        world_.access.copyProtection(world_.folder / "link", *file);
        return modeOf(to()) == 0 ? 0 : 1;
    };
    if (isRoot()) {
        ASSERT_EQ(::chown(world_.folder.path().c_str(), kNobody, kNobody), 0);
        ASSERT_EQ(::chown(from_.c_str(), kNobody, kNobody), 0);
    }
    EXPECT_EQ(isRoot() ? inChildAs(kNobody, work) : inChild(work), 0);
    EXPECT_EQ(causeOf([&] {
                  world_.access.copyProtection(world_.folder / "none",
                                               *world_.files.createNew(world_.folder / "x"));
              }),
              Cause::FileNotFound);
}

TEST_F(Protection, thatTheCallerMayNotGiveIsAFailure) {
    if (!isRoot()) GTEST_SKIP() << "needs root";
    ASSERT_EQ(::chmod(world_.folder.path().c_str(), 0777), 0);
    struct Case {
        uid_t owner;
        gid_t group;
        mode_t mode;
    };
    for (const Case& c : {Case{0, kNobody, 0644}, Case{kNobody, 0, 0644}, Case{kNobody, 0, 02755}}) {
        ASSERT_EQ(::chown(from_.c_str(), c.owner, c.group), 0);
        ASSERT_EQ(::chmod(from_.c_str(), c.mode), 0);
        EXPECT_EQ(inChildAs(kNobody,
                            [&] {
                                const auto file = candidate();
                                const auto cause =
                                    causeOf([&] { world_.access.copyProtection(from_, *file); });
                                const bool isClosed = (modeOf(to()) & 0077) == 0;
                                ::unlink(to().c_str());
                                return cause == Cause::AccessDenied && isClosed ? 0 : 1;
                            }),
                  0)
            << c.owner << ":" << c.group;
    }
    // Where the folder hands its group down only the set-group-id bit is out of reach, and it goes without a
    // word.
    ASSERT_EQ(::chmod(world_.folder.path().c_str(), 02777), 0);
    EXPECT_EQ(inChildAs(kNobody,
                        [&] {
                            const auto file = candidate();
                            const auto cause = causeOf([&] { world_.access.copyProtection(from_, *file); });
                            ::unlink(to().c_str());
                            return cause == Cause::AccessDenied && statusOf(from_).st_gid == 0 ? 0 : 1;
                        }),
              0);
    ASSERT_EQ(::chmod(world_.folder.path().c_str(), 0777), 0);
    ASSERT_EQ(::chown(from_.c_str(), kNobody, kNobody), 0);
    ASSERT_TRUE(set(from_, "security.capability", kCapability));
    EXPECT_EQ(inChildAs(kNobody,
                        [&] {
                            const auto file = candidate();
                            return causeOf([&] { world_.access.copyProtection(from_, *file); }) ==
                                           Cause::AccessDenied
                                       ? 0
                                       : 1;
                        }),
              0);
}

TEST_F(Protection, setAttributesMovesTheOwnersWriteBitAlone) {
    const auto file = world_.files.openShared(from_);
    const auto modeAfter = [&](mode_t mode, std::uint32_t attributes) {
        EXPECT_EQ(::chmod(from_.c_str(), mode), 0);
        world_.access.setAttributes(*file, attributes);
        return modeOf(from_);
    };
    EXPECT_EQ(modeAfter(0664, attribute::kReadOnly | attribute::kArchive), 0464U);
    EXPECT_EQ(modeAfter(0464, attribute::kReadOnly), 0464U);
    EXPECT_EQ(modeAfter(0464, attribute::kArchive | attribute::kHidden), 0664U);
    EXPECT_EQ(modeAfter(06755, attribute::kReadOnly), 06555U);
    EXPECT_EQ(modeAfter(0, 0), 0200U);
    EXPECT_EQ(file->status().attributes & attribute::kReadOnly, 0U);

    if (!set(from_, kAccess, sampleList())) GTEST_SKIP() << "no access lists here";
    EXPECT_EQ(modeAfter(0670, attribute::kReadOnly), 0470U);
    EXPECT_EQ(attributesOf(from_)[kAccess].size(), sampleList().size());
}

TEST_F(Protection, setAttributesOfAnothersFileIsRefusedUnlessTheyHoldAlready) {
    if (!isRoot()) GTEST_SKIP() << "needs root";
    ASSERT_EQ(::chmod(from_.c_str(), 0644), 0);
    EXPECT_EQ(inChildAs(kNobody,
                        [&] {
                            const auto file = world_.files.openShared(from_);
                            world_.access.setAttributes(*file, attribute::kArchive);
                            return causeOf([&] {
                                       world_.access.setAttributes(*file, attribute::kReadOnly);
                                   }) == Cause::AccessDenied
                                       ? 0
                                       : 1;
                        }),
              0);
    EXPECT_EQ(modeOf(from_), 0644U);
}

}  // namespace
}  // namespace corvalence::test
