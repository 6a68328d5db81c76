#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "failure_of.h"
#include "test_platform.h"

namespace {
bool foldersFail = false;
}

/// Stands in for the system's in this program: folders of a dying disk are not to be flushed.
extern "C" int fsync(int descriptor) {
    struct stat data {};
    if (foldersFail && fstat(descriptor, &data) == 0 && S_ISDIR(data.st_mode)) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

namespace corvalence::test {
namespace {

// A rename that was done and told as failed made its caller wipe what had become the user's file.
TEST(FolderSync, NeverTellsADoneRenameAsFailed) {
    TestPlatform machine;
    machine.folder.write("from", "new");
    machine.folder.write("to", "old");
    foldersFail = true;
    const auto failure = failureOf([&] {
        machine.files.rename(machine.folder / "from", machine.folder / "to");
        EXPECT_TRUE(machine.files.linkNew(machine.folder / "to", machine.folder / "second"));
        EXPECT_TRUE(machine.files.renameNew(machine.folder / "to", machine.folder / "third"));
    });
    foldersFail = false;
    EXPECT_FALSE(failure);
    EXPECT_EQ(machine.folder.read("third"), "new");
    EXPECT_FALSE(machine.folder.has("from") || machine.folder.has("to"));
}

}  // namespace
}  // namespace corvalence::test
