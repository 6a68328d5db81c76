#include <gtest/gtest.h>
#include <sys/acl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <map>

#include "child_process.h"
#include "failure_of.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

class Streams : public testing::Test {
  protected:
    bool set(const std::string& path, const char* name, const std::string& value) {
        return ::lsetxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
    }
    /// Name and content of every stream, read a few bytes at a time.
    std::map<std::string, std::string> streamsOf(const std::string& path) {
        std::map<std::string, std::string> all;
        const auto reader = system_.streams.open(path);
        for (platform::StreamEntry entry; reader->next(entry);) {
            std::string& content = all[entry.name];
            std::array<std::uint8_t, 7> block{};
            while (const std::size_t count = reader->read(block))
                content += base::textOf(base::ByteView(block).first(count));
            EXPECT_EQ(entry.size, content.size()) << entry.name;
        }
        return all;
    }
    std::vector<std::string> namesOf(const std::string& path) {
        std::vector<std::string> names;
        const auto reader = system_.streams.open(path);
        for (platform::StreamEntry entry; reader->next(entry);)
            names.push_back(entry.name);
        return names;
    }

    SystemBackEnd system_;
    TempFolder folder_;
};

TEST_F(Streams, ofFilesAndFoldersAreGivenByNameWithoutAccessLists) {
    const std::string file = folder_.write("a", "content");
    EXPECT_TRUE(streamsOf(file).empty());
    if (!set(file, "user.zone", std::string("a\0b and more", 12))) GTEST_SKIP() << "no attributes here";
    ASSERT_TRUE(set(file, "user.empty", ""));
    ASSERT_TRUE(set(folder_.path(), "user.note", "on a folder"));
    const acl_t list = ::acl_from_text("u::rw-,u:1234:r--,g::r--,m::r--,o::---");
    EXPECT_EQ(::acl_set_file(file.c_str(), ACL_TYPE_ACCESS, list), 0);
    ::acl_free(list);
    EXPECT_EQ(streamsOf(file), (std::map<std::string, std::string>{
                                   {"user.empty", ""}, {"user.zone", std::string("a\0b and more", 12)}}));
    EXPECT_EQ(namesOf(file), (std::vector<std::string>{"user.empty", "user.zone"}));
    EXPECT_EQ(namesOf(folder_.path()), std::vector<std::string>{"user.note"});
}

TEST_F(Streams, ofALinkAreItsOwn) {
    const std::string link = folder_ / "link";
    ASSERT_EQ(::symlink(folder_.write("a", "x").c_str(), link.c_str()), 0);
    if (!set(folder_ / "a", "user.note", "x")) GTEST_SKIP() << "no attributes here";
    EXPECT_TRUE(namesOf(link).empty());
    if (!isRoot()) GTEST_SKIP() << "setting an attribute of a link needs root";
    ASSERT_TRUE(set(link, "trusted.own", "x"));
    EXPECT_EQ(namesOf(link), std::vector<std::string>{"trusted.own"});
}

TEST_F(Streams, thatGoOnTheWayAreLeftOutAndMissingFilesTold) {
    const std::string file = folder_.write("a", "x");
    if (!set(file, "user.a", "1") || !set(file, "user.b", "2")) GTEST_SKIP() << "no attributes here";
    const auto reader = system_.streams.open(file);
    platform::StreamEntry entry;
    ASSERT_TRUE(reader->next(entry));
    ASSERT_EQ(::removexattr(file.c_str(), "user.b"), 0);
    EXPECT_FALSE(reader->next(entry));
    std::array<std::uint8_t, 4> block{};
    EXPECT_EQ(reader->read(block), 0U);
    EXPECT_EQ(causeOf([&] { system_.streams.open(folder_ / "none"); }), base::Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { system_.streams.open(file + "/x"); }), base::Cause::BadPath);
}

}  // namespace
}  // namespace corvalence::test
