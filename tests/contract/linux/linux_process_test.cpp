#include "platform/linux/linux_process.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "child_process.h"
#include "failure_of.h"
#include "run_program.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using namespace std::chrono_literals;
using base::Cause;

class Processes : public testing::Test {
  protected:
    Processes() { EXPECT_EQ(::pipe(signpost_.data()), 0); }
    ~Processes() override {
        ::close(signpost_[0]);
        ::close(signpost_[1]);
    }
    /// Lets one process tell another that it has come to a point.
    void reached() const { EXPECT_EQ(::write(signpost_[1], "x", 1), 1); }
    bool isReached() const {
        pollfd port{signpost_[0], POLLIN, 0};
        return ::poll(&port, 1, 60'000) == 1;
    }
    bool isFree(std::chrono::milliseconds wait = 0ms) {
        return process_.lockInstallation(folder_.path(), wait) != nullptr;
    }
    /// What becomes of a process in which this signal arrives.
    int afterSignal(int number, bool isCaught) {
        return inChild([&] {
            std::signal(number, SIG_DFL);
            if (isCaught) process_.catchCancelSignals();
            ::raise(number);
            return process_.cancelRequested() ? 1 : 2;
        });
    }

    TempFolder folder_;
    platform::linux_system::LinuxProcess process_;
    std::array<int, 2> signpost_{};
};

TEST_F(Processes, holdTheLockOneAtATime) {
    auto lock = process_.lockInstallation(folder_.path(), 0ms);
    ASSERT_NE(lock, nullptr);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(isFree());
    EXPECT_FALSE(isFree(120ms));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 120ms);
    const TempFolder other;
    EXPECT_NE(process_.lockInstallation(other.path(), 0ms), nullptr);
    // A program that is started does not get it.
    const ChildProcess sleeper([] { return ::execl("/bin/sleep", "sleep", "60", nullptr); });
    const auto programOf = [](const std::string& id) {
        return std::filesystem::read_symlink("/proc/" + id + "/exe");
    };
    while (programOf(std::to_string(sleeper.id())) == programOf("self"))
        std::this_thread::sleep_for(5ms);
    lock.reset();
    EXPECT_TRUE(isFree());
    EXPECT_EQ(causeOf([&] { process_.lockInstallation(folder_ / "none", 0ms); }), Cause::FileNotFound);
}

TEST_F(Processes, giveTheLockUpWhenTheyAreKilled) {
    ChildProcess holder([&] {
        const auto lock = process_.lockInstallation(folder_.path(), 0ms);
        reached();
        ::pause();
        return 0;
    });
    ASSERT_TRUE(isReached());
    EXPECT_FALSE(isFree());
    std::thread killer([&] {
        std::this_thread::sleep_for(100ms);
        holder.signal(SIGKILL);
    });
    EXPECT_TRUE(isFree(60s));
    killer.join();
}

TEST_F(Processes, endWaitingForTheLockWhenTheUserCancels) {
    const auto lock = process_.lockInstallation(folder_.path(), 0ms);
    ChildProcess waiter([&] {
        process_.catchCancelSignals();
        reached();
        return isFree(300s) || !process_.cancelRequested() ? 1 : 0;
    });
    ASSERT_TRUE(isReached());
    std::this_thread::sleep_for(50ms);
    const auto begin = std::chrono::steady_clock::now();
    waiter.signal(SIGTERM);
    EXPECT_EQ(waiter.wait(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 60s);
}

TEST_F(Processes, lockUnderAnyMaskAndThroughNoLink) {
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

TEST_F(Processes, tellTheirProgramAlsoWhenItsFileIsGone) {
    constexpr const char* kCopy = "CORVALENCE_TEST_COPY";
    const std::string own = process_.programFile();
    EXPECT_EQ(own, std::filesystem::read_symlink("/proc/self/exe"));
    if (const char* copy = std::getenv(kCopy)) {
        EXPECT_EQ(own, copy);
        EXPECT_TRUE(std::filesystem::remove(own));
        EXPECT_EQ(process_.programFile(), own);
        return;
    }
    std::filesystem::copy_file(own, folder_ / "copy");
    ::setenv(kCopy, (folder_ / "copy").c_str(), 1);
    const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
    EXPECT_EQ(runProgram(folder_ / "copy", {"--gtest_filter=*." + test}), 0);
    ::unsetenv(kCopy);
    EXPECT_FALSE(folder_.has("copy"));
}

TEST_F(Processes, hearCancelSignalsInsteadOfEnding) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EQ(afterSignal(number, false), 1000 + number);
        EXPECT_EQ(afterSignal(number, true), 1) << number;
    }
    EXPECT_FALSE(process_.cancelRequested());
}

TEST_F(Processes, leaveAHangUpIgnoredThatTheirStarterIgnores) {
    const auto work = [&] {
        std::signal(SIGHUP, SIG_IGN);
        std::signal(SIGINT, SIG_IGN);  // as a shell starts commands behind "&"
        process_.catchCancelSignals();
        ::raise(SIGHUP);
        if (process_.cancelRequested()) return 1;
        ::raise(SIGINT);
        return process_.cancelRequested() ? 0 : 2;
    };
    EXPECT_EQ(inChild(work), 0);
}

TEST_F(Processes, endAWaitForInputOnACancelSignal) {
    ChildProcess reader([&] {
        process_.catchCancelSignals();
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) return 1;
        reached();
        char byte = 0;
        return ::read(ends[0], &byte, 1) < 0 && errno == EINTR ? 0 : 2;
    });
    ASSERT_TRUE(isReached());
    reader.waitForSleep();
    reader.signal(SIGINT);
    EXPECT_EQ(reader.wait(), 0);
}

TEST_F(Processes, areAnAdministratorsAsRootOrInAnAdministratorsGroup) {
    if (!isRoot()) GTEST_SKIP() << "needs root";
    EXPECT_TRUE(process_.isAdministrator());
    const auto asNumber = [&] { return process_.isAdministrator() ? 1 : 0; };
    EXPECT_EQ(inChildAs(kNobody, asNumber), 0);
    const group* sudo = ::getgrnam("sudo");
    if (sudo == nullptr) GTEST_SKIP() << "there is no group sudo here";
    EXPECT_EQ(inChildAs(kNobody, asNumber, sudo->gr_gid), 1);
}

}  // namespace
}  // namespace corvalence::test
