#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "failure_of.h"
#include "faulty_file_system.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using base::Cause;
using platform::FileKind;
using platform::Follow;

/// The same promises from the real files and from those that tests put in their place.
class FileSystemContract : public testing::TestWithParam<bool> {
  protected:
    platform::FileSystem& files() {
        if (GetParam()) return decorated_;
        return system_.files;
    }
    std::string readAll(platform::File& file) {
        std::string text(100, '\0');
        text.resize(file.read({reinterpret_cast<std::uint8_t*>(text.data()), text.size()}));
        return text;
    }

    TempFolder folder_;

  private:
    SystemBackEnd system_;
    FaultPlan plan_;
    FaultyFileSystem decorated_{system_.files, plan_};
};

INSTANTIATE_TEST_SUITE_P(Files, FileSystemContract, testing::Bool(), [](const auto& run) {
    return run.param ? std::string("Decorated") : std::string("Real");
});

TEST_P(FileSystemContract, anOpenFileHasOnePositionForReadingAndWriting) {
    const auto file = files().createNew(folder_ / "a.txt");
    EXPECT_EQ(file->path(), folder_ / "a.txt");
    file->write(base::bytesOf("0123456789"));
    EXPECT_EQ(readAll(*file), "");
    file->seek(7);
    EXPECT_EQ(readAll(*file), "789");
    file->seek(2);
    file->write(base::bytesOf("ab"));
    EXPECT_EQ(readAll(*file), "456789");
    file->resize(6);
    file->seek(0);
    EXPECT_EQ(readAll(*file), "01ab45");
    file->seek(1);
    file->resize(8);
    EXPECT_EQ(readAll(*file), std::string("1ab45\0\0", 7));
    EXPECT_EQ(file->size(), 8U);
    EXPECT_EQ(file->status().size, 8U);
    file->seek(20);
    EXPECT_EQ(readAll(*file), "");
    file->write({});
    file->flush();
    EXPECT_EQ(folder_.read("a.txt"), std::string("01ab45\0\0", 8));
    EXPECT_EQ(causeOf([&] { file->seek(UINT64_MAX); }), Cause::BadSeek);
}

TEST_P(FileSystemContract, createNewNeverTouchesWhatStandsThere) {
    folder_.write("file", "old");
    folder_.write("folder/inside", "x");
    std::filesystem::create_symlink(folder_ / "missing", folder_ / "link");
    for (const char* name : {"file", "folder", "link"}) {
        const auto failure = failureOf([&] { files().createNew(folder_ / name); });
        ASSERT_TRUE(failure) << name;
        EXPECT_TRUE(files().isNameTaken(*failure)) << name;
        EXPECT_FALSE(files().isOtherVolume(*failure)) << name;
        EXPECT_EQ(failure->cause(), Cause::AccessDenied) << name;
        EXPECT_NE(failure->systemError(), 0) << name;
    }
    EXPECT_EQ(folder_.read("file"), "old");
    EXPECT_FALSE(folder_.has("missing"));
    const auto missing = failureOf([&] { files().createNew(folder_ / "none/file"); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->cause(), Cause::FileNotFound);
    EXPECT_FALSE(files().isNameTaken(*missing));
}

TEST_P(FileSystemContract, aFileIsHeldByOneExclusiveOpenerAtATime) {
    auto made = files().createNew(folder_ / "a");
    made->write(base::bytesOf("one"));
    EXPECT_EQ(causeOf([&] { files().openExclusive(folder_ / "a"); }), Cause::SharingViolation);
    made.reset();

    auto held = files().openExclusive(folder_ / "a");
    EXPECT_EQ(readAll(*held), "one");
    EXPECT_EQ(causeOf([&] { files().openExclusive(folder_ / "a"); }), Cause::SharingViolation);
    held.reset();
    EXPECT_EQ(causeOf([&] { files().openExclusive(folder_ / "a"); }), Cause::None);
    EXPECT_EQ(causeOf([&] { files().openExclusive(folder_ / "b"); }), Cause::FileNotFound);
}

TEST_P(FileSystemContract, openSharedReadsFilesAndNothingElse) {
    folder_.write("a", "text");
    const auto first = files().openShared(folder_ / "a");
    const auto second = files().openShared(folder_ / "a");
    EXPECT_EQ(readAll(*first), "text");
    EXPECT_EQ(readAll(*second), "text");
    EXPECT_EQ(causeOf([&] { files().openShared(folder_ / "none"); }), Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { files().openShared(folder_ / "none/a"); }), Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { files().openShared(folder_.path()); }), Cause::InvalidFile);
    EXPECT_EQ(causeOf([&] { files().openExclusive(folder_.path()); }), Cause::InvalidFile);
}

TEST_P(FileSystemContract, statusTellsWhatStandsThere) {
    folder_.write("a", "12345");
    const auto before = std::chrono::system_clock::now();
    const auto status = files().status(folder_ / "a", Follow::Yes);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->kind, FileKind::Regular);
    EXPECT_EQ(status->size, 5U);
    EXPECT_EQ(status->attributes, platform::attribute::kArchive);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(before.time_since_epoch()).count();
    EXPECT_NEAR(static_cast<double>(status->written.unixSeconds()), static_cast<double>(seconds), 60);
    EXPECT_NEAR(static_cast<double>(status->created.unixSeconds()), static_cast<double>(seconds), 60);
    EXPECT_EQ(status->identity, files().openShared(folder_ / "a")->status().identity);

    EXPECT_EQ(files().status(folder_.path(), Follow::Yes)->kind, FileKind::Folder);
    EXPECT_FALSE(files().status(folder_ / "none", Follow::Yes));
    EXPECT_FALSE(files().status(folder_ / "none/a", Follow::Yes));
    EXPECT_FALSE(files().status(folder_ / "a/b", Follow::No));
}

TEST_P(FileSystemContract, identityFollowsTheFileAndNotItsName) {
    const auto identityOf = [&](const char* name) {
        return files().status(folder_ / name, Follow::No)->identity;
    };
    folder_.write("a", "one");
    folder_.write("b", "two");
    const auto a = identityOf("a");
    const auto b = identityOf("b");
    EXPECT_NE(a, b);
    folder_.write("a", "changed");
    EXPECT_EQ(identityOf("a"), a);
    files().rename(folder_ / "a", folder_ / "b");
    EXPECT_EQ(identityOf("b"), a);

    if (a.birth == 0) GTEST_SKIP() << "this file system keeps no creation times";
    files().remove(folder_ / "b");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    folder_.write("b", "a new file, perhaps with the old one's number");
    EXPECT_NE(identityOf("b"), a);
}

TEST_P(FileSystemContract, listsEverythingByTheBytesOfItsName) {
    for (const char* name : {"b", "B", "a", "a.txt", "_", " lead", "10", "9", ".dot"})
        folder_.write(name, "");
    folder_.write("folder/inside", "");
    std::filesystem::create_symlink("folder", folder_ / "zlink");
    std::vector<std::string> names;
    for (const auto& entry : files().list(folder_.path())) {
        names.push_back(entry.name);
        const auto status = files().status(folder_ / entry.name, Follow::No);
        EXPECT_EQ(entry.status.kind, status->kind) << entry.name;
        EXPECT_EQ(entry.status.attributes, status->attributes) << entry.name;
        EXPECT_EQ(entry.status.identity, status->identity) << entry.name;
    }
    EXPECT_EQ(names, (std::vector<std::string>{" lead", ".dot", "10", "9", "B", "_", "a", "a.txt", "b",
                                               "folder", "zlink"}));
    EXPECT_EQ(files().list(folder_.path()).back().status.kind, FileKind::Link);
    EXPECT_EQ(causeOf([&] { files().list(folder_ / "none"); }), Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { files().list(folder_ / "a"); }), Cause::BadPath);
}

TEST_P(FileSystemContract, renameReplacesAndRenameNewDoesNot) {
    folder_.write("a", "one");
    folder_.write("b", "two");
    EXPECT_FALSE(files().renameNew(folder_ / "a", folder_ / "b"));
    EXPECT_EQ(folder_.read("a") + folder_.read("b"), "onetwo");
    files().rename(folder_ / "a", folder_ / "b");
    EXPECT_FALSE(folder_.has("a"));
    EXPECT_EQ(folder_.read("b"), "one");
    EXPECT_TRUE(files().renameNew(folder_ / "b", folder_ / "c"));
    EXPECT_FALSE(folder_.has("b"));
    EXPECT_EQ(folder_.read("c"), "one");

    EXPECT_EQ(causeOf([&] { files().rename(folder_ / "a", folder_ / "c"); }), Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { files().renameNew(folder_ / "a", folder_ / "d"); }), Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { files().rename(folder_ / "c", folder_ / "none/c"); }), Cause::FileNotFound);
    EXPECT_EQ(folder_.read("c"), "one");
}

TEST_P(FileSystemContract, removesLinksAndNotWhatTheyLeadTo) {
    folder_.write("a", "one");
    std::filesystem::create_symlink(folder_ / "a", folder_ / "link");
    files().remove(folder_ / "link");
    EXPECT_EQ(folder_.read("a"), "one");
    files().remove(folder_ / "a");
    EXPECT_FALSE(folder_.has("a"));
    EXPECT_EQ(causeOf([&] { files().remove(folder_ / "a"); }), Cause::FileNotFound);
    EXPECT_NE(causeOf([&] { files().remove(folder_.path()); }), Cause::None);
}

TEST_P(FileSystemContract, createFolderMakesTheWholeWay) {
    files().createFolder(folder_ / "x/y/z");
    folder_.write("x/y/z/a", "kept");
    files().createFolder(folder_ / "x/y/z");
    files().createFolder(folder_ / "x/y/z/");
    files().createFolder(folder_ / "x//q/");
    EXPECT_EQ(folder_.read("x/y/z/a"), "kept");
    EXPECT_TRUE(folder_.has("x/q"));
    EXPECT_EQ(causeOf([&] { files().createFolder(folder_ / "x/y/z/a"); }), Cause::BadPath);
    EXPECT_EQ(causeOf([&] { files().createFolder(folder_ / "x/y/z/a/b"); }), Cause::BadPath);
    EXPECT_EQ(causeOf([&] { files().createFolder(""); }), Cause::FileNotFound);
}

TEST_P(FileSystemContract, takesNamesUpToItsLimit) {
    const std::string longest(files().nameLimit(), 'n');
    EXPECT_EQ(causeOf([&] { files().createNew(folder_ / longest); }), Cause::None);
    EXPECT_EQ(causeOf([&] { files().createNew(folder_ / (longest + "n")); }), Cause::BadPath);
}

}  // namespace
}  // namespace corvalence::test
