#include "platform/linux/linux_process.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>

#include "child_process.h"
#include "failure_of.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using namespace std::chrono_literals;
using base::Cause;

/// Lets one process tell another that it has come to a point.
class Signpost {
  public:
    Signpost() { EXPECT_EQ(::pipe(ends_.data()), 0); }
    ~Signpost() {
        ::close(ends_[0]);
        ::close(ends_[1]);
    }
    void reached() const { EXPECT_EQ(::write(ends_[1], "x", 1), 1); }
    bool wait() const {
        pollfd port{ends_[0], POLLIN, 0};
        char byte = 0;
        return ::poll(&port, 1, 10'000) == 1 && ::read(ends_[0], &byte, 1) == 1;
    }

  private:
    std::array<int, 2> ends_{};
};

class Locking : public testing::Test {
  protected:
    bool isFree(std::chrono::milliseconds wait = 0ms) {
        return process_.lockInstallation(folder_.path(), wait) != nullptr;
    }

    TempFolder folder_;
    platform::linux_system::LinuxProcess process_;
    Signpost held_;
};

TEST_F(Locking, oneHolderAtATime) {
    {
        const auto lock = process_.lockInstallation(folder_.path(), 0ms);
        ASSERT_NE(lock, nullptr);
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_FALSE(isFree());
        EXPECT_FALSE(isFree(120ms));
        EXPECT_GE(std::chrono::steady_clock::now() - begin, 120ms);
        const TempFolder other;
        EXPECT_NE(process_.lockInstallation(other.path(), 0ms), nullptr);
    }
    EXPECT_TRUE(isFree());
    EXPECT_EQ(causeOf([&] { process_.lockInstallation(folder_ / "none", 0ms); }), Cause::FileNotFound);
}

TEST_F(Locking, isFreeAgainWhenItsHolderIsKilled) {
    ChildProcess holder([&] {
        const auto lock = process_.lockInstallation(folder_.path(), 0ms);
        held_.reached();
        std::this_thread::sleep_for(60s);
        return lock == nullptr ? 1 : 0;
    });
    ASSERT_TRUE(held_.wait());
    EXPECT_FALSE(isFree());
    std::thread killer([&] {
        std::this_thread::sleep_for(100ms);
        holder.signal(SIGKILL);
    });
    EXPECT_TRUE(isFree(10s));
    killer.join();
}

TEST_F(Locking, isNotHandedToProgramsThatAreStarted) {
    auto lock = process_.lockInstallation(folder_.path(), 0ms);
    const ChildProcess sleeper([] { return ::execl("/bin/sleep", "sleep", "60", nullptr); });
    while (std::filesystem::read_symlink("/proc/" + std::to_string(sleeper.id()) + "/exe").filename() ==
           std::filesystem::read_symlink("/proc/self/exe").filename()) {
        std::this_thread::sleep_for(5ms);
    }
    lock.reset();
    EXPECT_TRUE(isFree());
}

TEST_F(Locking, endsWaitingWhenTheUserCancels) {
    const auto lock = process_.lockInstallation(folder_.path(), 0ms);
    ChildProcess waiter([&] {
        process_.catchCancelSignals();
        held_.reached();
        const bool gotIt = process_.lockInstallation(folder_.path(), 60s) != nullptr;
        return process_.cancelRequested() && !gotIt ? 0 : 1;
    });
    ASSERT_TRUE(held_.wait());
    std::this_thread::sleep_for(50ms);
    const auto begin = std::chrono::steady_clock::now();
    waiter.signal(SIGTERM);
    EXPECT_EQ(waiter.wait(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
}

TEST_F(Locking, worksUnderAnyMaskAndThroughNoLink) {
    const auto work = [&] {
        const TempFolder own;
        ::umask(0777);
        if (process_.lockInstallation(own.path(), 0ms) == nullptr) return 1;
        if (process_.lockInstallation(own.path(), 0ms) == nullptr) return 2;
        struct stat data {};
        return ::stat((own / "lock").c_str(), &data) == 0 && (data.st_mode & ALLPERMS) == 0600 ? 0 : 3;
    };
    EXPECT_EQ(isRoot() ? inChildAs(kNobody, work) : inChild(work), 0);
    folder_.write("target", "x");
    ASSERT_EQ(::symlink("target", (folder_ / "lock").c_str()), 0);
    EXPECT_EQ(causeOf([&] { process_.lockInstallation(folder_.path(), 0ms); }), Cause::BadPath);
}

class CancelSignal : public testing::TestWithParam<int> {};

TEST_P(CancelSignal, isHeardInsteadOfEndingTheProcess) {
    platform::linux_system::LinuxProcess process;
    EXPECT_EQ(inChild([&] {
                  std::signal(GetParam(), SIG_DFL);
                  ::raise(GetParam());
                  return 0;
              }),
              1000 + GetParam());
    EXPECT_EQ(inChild([&] {
                  std::signal(GetParam(), SIG_DFL);
                  process.catchCancelSignals();
                  if (process.cancelRequested()) return 1;
                  ::raise(GetParam());
                  return process.cancelRequested() ? 0 : 2;
              }),
              0);
    EXPECT_FALSE(process.cancelRequested());
}

INSTANTIATE_TEST_SUITE_P(Signals, CancelSignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(CancelSignals, leaveAHangUpIgnoredThatTheStarterIgnores) {
    EXPECT_EQ(inChild([] {
                  platform::linux_system::LinuxProcess process;
                  std::signal(SIGHUP, SIG_IGN);
                  std::signal(SIGINT, SIG_IGN);  // as a shell starts commands behind "&"
                  process.catchCancelSignals();
                  ::raise(SIGHUP);
                  if (process.cancelRequested()) return 1;
                  ::raise(SIGINT);
                  return process.cancelRequested() ? 0 : 2;
              }),
              0);
}

TEST(CancelSignals, endAWaitForInput) {
    Signpost waiting;
    ChildProcess reader([&] {
        platform::linux_system::LinuxProcess process;
        process.catchCancelSignals();
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) return 1;
        waiting.reached();
        char byte = 0;
        return ::read(ends[0], &byte, 1) < 0 && errno == EINTR ? 0 : 2;
    });
    ASSERT_TRUE(waiting.wait());
    std::this_thread::sleep_for(100ms);
    reader.signal(SIGINT);
    EXPECT_EQ(reader.wait(), 0);
}

TEST(Administrator, isRootOrAMemberOfAnAdministratorsGroup) {
    platform::linux_system::LinuxProcess process;
    if (!isRoot()) GTEST_SKIP() << "needs root";
    EXPECT_TRUE(process.isAdministrator());
    const auto asNumber = [&] { return process.isAdministrator() ? 1 : 0; };
    EXPECT_EQ(inChildAs(kNobody, asNumber), 0);
    const group* sudo = ::getgrnam("sudo");
    if (sudo == nullptr) GTEST_SKIP() << "there is no group sudo here";
    EXPECT_EQ(inChildAs(kNobody, asNumber, sudo->gr_gid), 1);
}

TEST(CurrentFolder, isAbsoluteAndMustExist) {
    EXPECT_EQ(inChild([] {
                  platform::linux_system::LinuxProcess process;
                  const TempFolder folder;
                  std::filesystem::create_directory(folder / "here");
                  std::filesystem::current_path(folder / "here");
                  if (process.currentFolder() != folder / "here") return 1;
                  std::filesystem::remove(folder / "here");
                  return causeOf([&] { process.currentFolder(); }) == Cause::FileNotFound ? 0 : 2;
              }),
              0);
}

}  // namespace
}  // namespace corvalence::test
