#include "platform/linux/linux_file_system.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "child_process.h"
#include "failure_of.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using base::Cause;
using platform::FileKind;
using platform::Follow;
namespace attribute = platform::attribute;

class LinuxFiles : public testing::Test {
  protected:
    mode_t modeOf(const std::string& path) {
        struct stat data {};
        EXPECT_EQ(::lstat(path.c_str(), &data), 0) << path;
        return data.st_mode & ALLPERMS;
    }
    std::uint32_t attributesOf(const char* name) {
        return files_.status(folder_ / name, Follow::No)->attributes;
    }

    TempFolder folder_;
    platform::linux_system::LinuxFileSystem files_;
};

TEST_F(LinuxFiles, refuseWhateverCouldBlockOrActWithoutTouchingIt) {
    ASSERT_EQ(::mkfifo((folder_ / "fifo").c_str(), 0600), 0);
    ASSERT_EQ(::symlink("fifo", (folder_ / "link").c_str()), 0);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (folder_ / "socket").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    // A writer that waits for a reader sees one come as soon as somebody opens the other end.
    ChildProcess writer([&] { return ::open((folder_ / "fifo").c_str(), O_WRONLY) < 0 ? 1 : 0; });
    for (const std::string& path : {folder_ / "fifo", folder_ / "link", folder_ / "socket",
                                    std::string("/dev/zero"), std::string("/dev/tty")}) {
        EXPECT_EQ(causeOf([&] { files_.openShared(path); }), Cause::InvalidFile) << path;
        EXPECT_EQ(causeOf([&] { files_.openExclusive(path); }), Cause::InvalidFile) << path;
    }
    ::usleep(50'000);
    EXPECT_TRUE(writer.isRunning());
    EXPECT_EQ(files_.status(folder_ / "fifo", Follow::No)->kind, FileKind::Other);
}

TEST_F(LinuxFiles, followLinksToFilesButNotIntoCircles) {
    folder_.write("target", "text");
    ASSERT_EQ(::symlink("target", (folder_ / "link").c_str()), 0);
    ASSERT_EQ(::symlink("circle", (folder_ / "circle").c_str()), 0);
    EXPECT_EQ(files_.openShared(folder_ / "link")->size(), 4U);
    EXPECT_EQ(files_.status(folder_ / "link", Follow::Yes)->kind, FileKind::Regular);
    EXPECT_EQ(causeOf([&] { files_.openShared(folder_ / "circle"); }), Cause::BadPath);
    EXPECT_EQ(causeOf([&] { files_.status(folder_ / "circle", Follow::Yes); }), Cause::BadPath);
}

TEST_F(LinuxFiles, madeByThisProgramBelongToTheOwnerAloneWhateverTheMask) {
    for (const mode_t mask : {mode_t{0}, mode_t{0777}}) {
        const auto work = [&] {
            const TempFolder own;
            ::umask(mask);
            files_.createNew(own / "a");
            files_.openExclusive(own / "a");
            files_.createFolder(own / "x/y/z");
            files_.createNew(own / "x/y/z/a");
            if (modeOf(own / "a") != 0600) return 1;
            return modeOf(own / "x") == 0700 && modeOf(own / "x/y/z") == 0700 ? 0 : 2;
        };
        // Root would not notice that it lacks a right.
        EXPECT_EQ(isRoot() ? inChildAs(kNobody, work) : inChild(work), 0) << mask;
    }
}

TEST_F(LinuxFiles, bearTheAttributesThatTheirModeAndNameGive) {
    for (const char* name : {"plain", ".hidden", "folder/x", ".folder/x"})
        folder_.write(name, "");
    ::chmod((folder_ / "plain").c_str(), 0577);
    ::chmod((folder_ / ".folder").c_str(), 0500);
    EXPECT_EQ(attributesOf("plain"), attribute::kArchive | attribute::kReadOnly);
    EXPECT_EQ(attributesOf(".hidden"), attribute::kArchive | attribute::kHidden);
    EXPECT_EQ(attributesOf("folder"), attribute::kFolder);
    EXPECT_EQ(attributesOf(".folder"), attribute::kFolder | attribute::kHidden | attribute::kReadOnly);
    EXPECT_EQ(files_.openShared(folder_ / ".hidden")->status().attributes, attributesOf(".hidden"));
}

TEST_F(LinuxFiles, keepTimesToAHundredNanosecondsAndTheTimeOfCreationWhereThereIsOne) {
    const std::string path = folder_.write("a", "");
    struct statx data {};
    ASSERT_EQ(::statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME | STATX_CTIME, &data), 0);
    const bool isKept = (data.stx_mask & STATX_BTIME) != 0;
    const auto& time = isKept ? data.stx_btime : data.stx_ctime;
    const auto expected = base::FileTime::fromUnix(time.tv_sec, time.tv_nsec);
    ::usleep(20'000);
    const timespec times[2] = {{0, 0}, {1'000'000'000, 123'456'789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    const auto status = *files_.status(path, Follow::No);
    EXPECT_EQ(status.written, base::FileTime::fromUnix(1'000'000'000, 123'456'700));
    EXPECT_EQ(status.created == expected, isKept);
    EXPECT_EQ(status.identity.birth, isKept ? expected.ticks : 0);
}

TEST_F(LinuxFiles, neverTakeAPathForItsFrontPart) {
    folder_.write("a", "text");
    const std::string path = folder_ / std::string("a\0.txt", 6);
    const std::function<void()> calls[] = {[&] { files_.openShared(path); }, [&] { files_.remove(path); },
                                           [&] { files_.rename(folder_ / "a", path); },
                                           [&] { files_.createFolder(path); },
                                           [&] { files_.status(path, Follow::No); }};
    for (const auto& call : calls)
        EXPECT_EQ(causeOf(call), Cause::BadPath);
    EXPECT_EQ(folder_.read("a"), "text");
}

TEST_F(LinuxFiles, tellWhatTheSystemRefuses) {
    EXPECT_EQ(causeOf([&] { files_.openShared("/" + std::string(5000, 'x')); }), Cause::BadPath);
    if (!isRoot()) GTEST_SKIP() << "needs root";
    folder_.write("closed/x", "x");
    ::chmod((folder_ / "closed").c_str(), 0744);
    const std::function<void()> calls[] = {
        [&] { files_.openShared(folder_ / "closed/x"); },
        [&] { files_.status(folder_ / "closed/x", Follow::No); }, [&] { files_.createNew(folder_ / "new"); },
        [&] { files_.remove(folder_ / "closed/x"); }, [&] { files_.createFolder(folder_ / "new"); }};
    for (const auto& call : calls) {
        const auto work = [&] { return causeOf(call) == Cause::AccessDenied ? 0 : 1; };
        EXPECT_EQ(inChildAs(kNobody, work), 0) << &call - calls;
    }
}

TEST_F(LinuxFiles, listByNameWhatTheyMayNotLookAt) {
    folder_.write("closed/x", "x");
    ::chmod((folder_ / "closed").c_str(), 0444);
    const auto work = [&] {
        const auto entries = files_.list(folder_ / "closed");
        if (entries.size() != 1 || entries[0].name != "x") return 1;
        return entries[0].fault == Cause::AccessDenied && entries[0].status.kind == FileKind::Other ? 0 : 2;
    };
    EXPECT_EQ(isRoot() ? inChildAs(kNobody, work) : inChild(work), 0);
}

TEST_F(LinuxFiles, lieOnPseudoFileSystemsWhereTheKernelMakesThemUp) {
    for (const char* folder : {"/proc", "/proc/sys/", "/sys"})
        EXPECT_TRUE(files_.isPseudo(folder)) << folder;
    for (const std::string& folder :
         {std::string("/"), std::string("/dev/shm"), folder_.path(), folder_ / "none"})
        EXPECT_FALSE(files_.isPseudo(folder)) << folder;
}

TEST_F(LinuxFiles, renameWithinAFolderThatMayBeWrittenButNotRead) {
    if (!isRoot()) GTEST_SKIP() << "needs root";
    folder_.write("drop/a", "x");
    ::chmod((folder_ / "drop").c_str(), 0733);
    const auto work = [&] {
        files_.createNew(folder_ / "drop/mine")->write(base::bytesOf("y"));
        files_.rename(folder_ / "drop/mine", folder_ / "drop/b");
        return files_.renameNew(folder_ / "drop/b", folder_ / "drop/a") ? 1 : 0;
    };
    EXPECT_EQ(inChildAs(kNobody, work), 0);
    EXPECT_EQ(folder_.read("drop/b"), "y");
}

TEST_F(LinuxFiles, runOutOfDescriptorsBeforeAnythingChanges) {
    folder_.write("a", "one");
    folder_.write("b", "two");
    const auto work = [&] {
        // The sanitizer's first look at a type takes a descriptor of its own.
        if (causeOf([&] { files_.rename(folder_ / "missing", folder_ / "b"); }) != Cause::FileNotFound)
            return 2;
        while (::open("/dev/null", O_RDONLY | O_CLOEXEC) >= 0) {
        }
        const auto cause = causeOf([&] { files_.rename(folder_ / "a", folder_ / "b"); });
        return cause == Cause::TooManyOpenFiles ? 0 : 1;
    };
    EXPECT_EQ(inChild(work), 0);
    EXPECT_EQ(folder_.read("b"), "two");
}

TEST_F(LinuxFiles, leaveNoDescriptorToProgramsThatAreStarted) {
    folder_.write("a", "x");
    const std::unique_ptr<platform::File> open[] = {files_.openShared(folder_ / "a"),
                                                    files_.openExclusive(folder_ / "a"),
                                                    files_.createNew(folder_ / "b")};
    int found = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const std::string target = std::filesystem::read_symlink(entry.path(), error);
        if (target.find(folder_.path()) != 0) continue;
        ++found;
        EXPECT_NE(::fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC, 0) << target;
    }
    EXPECT_EQ(found, 3);
}

}  // namespace
}  // namespace corvalence::test
