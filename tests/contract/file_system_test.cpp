#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <thread>

#include "failure_of.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

using base::Cause;
using platform::FileKind;
using platform::Follow;

/// The promises of files, as tests use them: the system's own, behind those that tests put in their place.
class FileSystemContract : public testing::Test {
  protected:
    std::string readAll(const std::unique_ptr<platform::File>& file) {
        std::string text(100, '\0');
        text.resize(file->read({reinterpret_cast<std::uint8_t*>(text.data()), text.size()}));
        return text;
    }
    Cause ofOpening(const std::string& path) {
        return causeOf([&] { files_.openShared(path); });
    }
    Cause ofHolding(const std::string& path) {
        return causeOf([&] { files_.openExclusive(path); });
    }

    TestPlatform world_;
    TempFolder& folder_ = world_.folder;
    platform::FileSystem& files_ = world_.files;
};

TEST_F(FileSystemContract, anOpenFileHasOnePositionForReadingAndWriting) {
    auto file = files_.createNew(folder_ / "a.txt");
    file->write(base::bytesOf("0123456789"));
    EXPECT_EQ(readAll(file), "");
    file->seek(2);
    file->write(base::bytesOf("ab"));
    EXPECT_EQ(readAll(file), "456789");
    file->resize(6);
    file->seek(1);
    file->resize(8);
    EXPECT_EQ(readAll(file), std::string("1ab45\0\0", 7));
    EXPECT_EQ(file->size(), 8U);
    EXPECT_EQ(file->status().size, 8U);
    file->seek(20);
    EXPECT_EQ(readAll(file), "");
    file->write({});
    file->flush();
    EXPECT_EQ(causeOf([&] { file->seek(UINT64_MAX); }), Cause::BadSeek);
    file.reset();
    EXPECT_EQ(folder_.read("a.txt"), std::string("01ab45\0\0", 8));
}

TEST_F(FileSystemContract, createNewNeverTouchesWhatStandsThere) {
    folder_.write("file", "old");
    folder_.write("folder/inside", "x");
    const bool hasLink = makeLink(folder_ / "missing", folder_ / "link");
    for (const char* name : {"file", "folder", hasLink ? "link" : "file"}) {
        const auto failure = failureOf([&] { files_.createNew(folder_ / name); });
        ASSERT_TRUE(failure) << name;
        EXPECT_TRUE(files_.isNameTaken(*failure)) << name;
        EXPECT_EQ(failure->cause(), Cause::AccessDenied) << name;
    }
    EXPECT_EQ(folder_.read("file"), "old");
    EXPECT_FALSE(folder_.has("missing"));
    const auto missing = failureOf([&] { files_.createNew(folder_ / "none/file"); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->cause(), Cause::FileNotFound);
    EXPECT_FALSE(files_.isNameTaken(*missing));
    const std::string longest(files_.nameLimit(), 'n');
    files_.createNew(folder_ / longest);
    EXPECT_EQ(causeOf([&] { files_.createNew(folder_ / (longest + "n")); }), Cause::BadPath);
}

TEST_F(FileSystemContract, aFileIsReadByManyAndHeldByOne) {
    auto held = files_.createNew(folder_ / "a");
    held->write(base::bytesOf("text"));
    EXPECT_EQ(ofHolding(folder_ / "a"), Cause::SharingViolation);
    held.reset();
    held = files_.openExclusive(folder_ / "a");
    EXPECT_EQ(readAll(held), "text");
    EXPECT_EQ(ofHolding(folder_ / "a"), Cause::SharingViolation);
    held.reset();
    EXPECT_EQ(ofHolding(folder_ / "a"), Cause::None);

    const auto first = files_.openShared(folder_ / "a");
    EXPECT_EQ(readAll(files_.openShared(folder_ / "a")), "text");
    EXPECT_EQ(readAll(first), "text");
    EXPECT_EQ(ofOpening(folder_ / "none/a"), Cause::FileNotFound);
    EXPECT_EQ(ofHolding(folder_ / "none"), Cause::FileNotFound);
    EXPECT_EQ(ofOpening(folder_.path()), Cause::InvalidFile);
    EXPECT_EQ(ofHolding(folder_.path()), Cause::InvalidFile);
}

TEST_F(FileSystemContract, statusTellsWhatStandsThere) {
    folder_.write("a", "12345");
    const auto now = static_cast<double>(std::time(nullptr));
    const auto status = files_.status(folder_ / "a", Follow::Yes);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->kind, FileKind::Regular);
    EXPECT_EQ(status->size, 5U);
    EXPECT_EQ(status->attributes, platform::attribute::kArchive);
    EXPECT_NEAR(static_cast<double>(status->written.unixSeconds()), now, 60);
    EXPECT_NEAR(static_cast<double>(status->created.unixSeconds()), now, 60);
    EXPECT_EQ(status->identity, files_.openShared(folder_ / "a")->status().identity);

    EXPECT_EQ(files_.status(folder_.path(), Follow::Yes)->kind, FileKind::Folder);
    for (const char* name : {"none", "none/a", "a/b"})
        EXPECT_FALSE(files_.status(folder_ / name, Follow::No)) << name;
}

TEST_F(FileSystemContract, identityFollowsTheFileAndNotItsName) {
    const auto identityOf = [&](const char* name) {
        return files_.status(folder_ / name, Follow::No)->identity;
    };
    folder_.write("a", "one");
    folder_.write("b", "two");
    const auto a = identityOf("a");
    EXPECT_NE(a, identityOf("b"));
    folder_.write("a", "changed");
    files_.rename(folder_ / "a", folder_ / "b");
    EXPECT_EQ(identityOf("b"), a);

    if (a.birth == 0) GTEST_SKIP() << "this file system keeps no creation times";
    files_.remove(folder_ / "b");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    folder_.write("b", "a new file, perhaps with the old one's number");
    EXPECT_NE(identityOf("b"), a);
}

TEST_F(FileSystemContract, listsEverythingByTheBytesOfItsName) {
    for (const char* name : {"b", "C", "a", "a.txt", "_", " lead", "10", "9", ".dot", "\xE4\xB8\xAD",
                             "\xEF\xBD\x81", "folder/inside"})
        folder_.write(name, "");
    const bool hasLink = makeLink("folder", folder_ / "zlink");
    if (canBeNamed("\xFF")) folder_.write("\xFF", "");
    std::vector<std::string> names;
    const auto brief = files_.list(folder_.path(), platform::Detail::Folders);
    for (const auto& entry : files_.list(folder_.path())) {
        ASSERT_LT(names.size(), brief.size());
        const auto& alone = brief[names.size()];
        EXPECT_EQ(alone.name, entry.name);
        EXPECT_EQ(alone.status.kind, entry.status.kind);
        if (entry.status.kind == FileKind::Folder) {
            EXPECT_EQ(alone.status.attributes, entry.status.attributes);
            EXPECT_EQ(alone.status.identity, entry.status.identity);
        }
        names.push_back(entry.name);
        const auto status = files_.status(folder_ / entry.name, Follow::No);
        EXPECT_EQ(entry.status.kind, status->kind) << entry.name;
        EXPECT_EQ(entry.status.attributes, status->attributes) << entry.name;
        EXPECT_EQ(entry.status.identity, status->identity) << entry.name;
    }
    std::vector<std::string> expected = {" lead", ".dot", "10", "9", "C", "_", "a", "a.txt", "b", "folder"};
    if (hasLink) {
        expected.push_back("zlink");
        EXPECT_EQ(files_.status(folder_ / "zlink", Follow::No)->kind, FileKind::Link);
    }
    expected.insert(expected.end(), {"\xE4\xB8\xAD", "\xEF\xBD\x81"});
    if (canBeNamed("\xFF")) expected.push_back("\xFF");
    EXPECT_EQ(names, expected);
    EXPECT_EQ(causeOf([&] { files_.list(folder_ / "none"); }), Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { files_.list(folder_ / "a"); }), Cause::BadPath);
}

TEST_F(FileSystemContract, renameReplacesAndRenameNewDoesNot) {
    folder_.write("a", "one");
    folder_.write("b", "two");
    EXPECT_FALSE(files_.renameNew(folder_ / "a", folder_ / "b"));
    EXPECT_EQ(folder_.read("a") + folder_.read("b"), "onetwo");
    files_.rename(folder_ / "a", folder_ / "b");
    EXPECT_FALSE(folder_.has("a"));
    EXPECT_EQ(folder_.read("b"), "one");
    EXPECT_TRUE(files_.renameNew(folder_ / "b", folder_ / "c"));
    EXPECT_FALSE(folder_.has("b"));
    for (const char* to : {"c", "none/c"})
        EXPECT_EQ(causeOf([&] { files_.rename(folder_ / "a", folder_ / to); }), Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { files_.renameNew(folder_ / "a", folder_ / "d"); }), Cause::FileNotFound);
    EXPECT_EQ(folder_.read("c"), "one");
}

TEST_F(FileSystemContract, removesLinksAndNotWhatTheyLeadTo) {
    if (makeLink(folder_.write("a", "one"), folder_ / "link")) files_.remove(folder_ / "link");
    EXPECT_EQ(folder_.read("a"), "one");
    files_.remove(folder_ / "a");
    EXPECT_FALSE(folder_.has("a"));
    EXPECT_EQ(causeOf([&] { files_.remove(folder_ / "a"); }), Cause::FileNotFound);
    EXPECT_NE(causeOf([&] { files_.remove(folder_.path()); }), Cause::None);
}

TEST_F(FileSystemContract, createFolderMakesTheWholeWay) {
    files_.createFolder(folder_ / "x/y/z");
    folder_.write("x/y/z/a", "kept");
    files_.createFolder(folder_ / "x/y/z/");
    files_.createFolder(folder_ / "x//q/");
    EXPECT_EQ(folder_.read("x/y/z/a"), "kept");
    EXPECT_TRUE(folder_.has("x/q"));
    for (const char* name : {"x/y/z/a", "x/y/z/a/b"})
        EXPECT_EQ(causeOf([&] { files_.createFolder(folder_ / name); }), Cause::BadPath) << name;
    EXPECT_EQ(causeOf([&] { files_.createFolder(""); }), Cause::FileNotFound);
}

}  // namespace
}  // namespace corvalence::test
