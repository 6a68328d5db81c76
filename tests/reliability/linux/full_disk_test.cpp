#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include <filesystem>

#include "failure_of.h"
#include "world.h"

namespace corvalence::test {
namespace {

namespace fs = std::filesystem;

/// A file system in memory with room for so many bytes, which this process alone sees.
class SmallDisk {
  public:
    explicit SmallDisk(const std::string& size) {
        isThere_ = ::unshare(CLONE_NEWNS) == 0 &&
                   ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                   ::mount("tmpfs", place_.path().c_str(), "tmpfs", 0, ("size=" + size).c_str()) == 0;
    }
    ~SmallDisk() {
        if (isThere_) ::umount2(place_.path().c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isThere() const noexcept { return isThere_; }
    const std::string& path() const noexcept { return place_.path(); }
    void resize(const std::string& size) const {
        ASSERT_EQ(::mount("tmpfs", path().c_str(), "tmpfs", MS_REMOUNT, ("size=" + size).c_str()), 0);
    }

  private:
    TempFolder place_;
    bool isThere_ = false;
};

class FullDisk : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        if (!disk.isThere()) GTEST_SKIP() << "this machine does not let a test mount a file system";
        world.emplace(disk.path());
        ASSERT_EQ(world->install(), core::InstallResult::Installed);
        ASSERT_EQ(world->start(), core::StartResult::Ready);
        world->set(settings::key::kEncryptBackups, GetParam());
        ASSERT_TRUE(world->create());
    }

    /// The user's files lie on another disk; it is the installation's that fills up.
    std::string fileOf(int number) const {
        return users.write(std::to_string(number), std::string(kFileSize, static_cast<char>('a' + number)));
    }
    int addUntilFull() {
        for (int number = 0; number < kMostFiles; ++number) {
            const std::string path = fileOf(number);
            const auto failure = failureOf([&] { world->add({path}); });
            if (!failure) continue;
            EXPECT_EQ(failure->cause(), base::Cause::DiskFull) << failure->what();
            EXPECT_TRUE(failure->path().starts_with(world->data(""))) << failure->path();
            return number;
        }
        ADD_FAILURE() << "the disk never filled up";
        return 0;
    }
    void expectListed(int count) {
        EXPECT_TRUE(world->leftovers().empty());
        EXPECT_EQ(world->records().size(), static_cast<std::size_t>(count));
        const CheckOutcome outcome = world->check();
        EXPECT_EQ(outcome.counts().identical, static_cast<std::uint32_t>(count));
    }

    static constexpr std::size_t kFileSize = 200'000;
    static constexpr int kMostFiles = 20;
    const SmallDisk disk{"1m"};
    const TempFolder users;
    std::optional<World> world;
};

TEST_P(FullDisk, KeepsTheOldStateAndGoesOnOnceThereIsRoom) {
    const int listed = addUntilFull();
    ASSERT_GT(listed, 1);
    disk.resize("8m");
    // In the same run, and in the next.
    expectListed(listed);
    EXPECT_EQ(world->add({fileOf(listed)}).added, 1U);
    ASSERT_EQ(world->start(), core::StartResult::Ready);
    expectListed(listed + 1);
    EXPECT_EQ(readWholeFile(world->data("Working Copies")), "");
    for (int number = 0; number <= listed; ++number) {
        const std::string path = users / std::to_string(number);
        const std::string content = readWholeFile(path);
        writeWholeFile(path, "spoilt");
        const auto record = world->records().at(static_cast<std::size_t>(number));
        EXPECT_TRUE(files::FileRestore(world->vault(), world->context())
                        .restoreFile(record, files::RestoreChoice::DeleteChangedFile)
                        .restored);
        EXPECT_EQ(readWholeFile(path), content);
    }
}

TEST_P(FullDisk, LetsFilesBeCheckedAndRestoredWhereNothingMoreFits) {
    const int listed = addUntilFull();
    disk.resize("1m");
    ASSERT_EQ(world->start(), core::StartResult::Ready);
    writeWholeFile(users / "0", "spoilt");
    EXPECT_EQ(world
                  ->check({.reactions = {files::Reaction::Restore},
                           .restore = files::RestoreChoice::DeleteChangedFile})
                  .counts()
                  .changed,
              1U);
    EXPECT_EQ(readWholeFile(users / "0"), std::string(kFileSize, 'a'));
    expectListed(listed);
}

TEST_P(FullDisk, KeepsThePasswordUntilThereIsRoomForAnother) {
    const int listed = addUntilFull();
    disk.resize("1m");
    // Containers that hold nothing sealed stay as they are, and the rest is small.
    if (std::string_view(GetParam()) == "N") {
        const auto failure = failureOf([&] { world->changePassword("another"); });
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->cause(), base::Cause::DiskFull);
        ASSERT_EQ(world->start(), core::StartResult::Ready);
        expectListed(listed);
    }
    disk.resize("8m");
    EXPECT_EQ(world->changePassword("another").result, core::PasswordChangeResult::Changed);
    world->password.password = "another";
    ASSERT_EQ(world->start(), core::StartResult::Ready);
    expectListed(listed);
}

INSTANTIATE_TEST_SUITE_P(Reliability, FullDisk, testing::Values("N", "P"));

}  // namespace
}  // namespace corvalence::test
