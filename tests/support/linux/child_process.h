#pragma once

#include <sys/types.h>

#include <csignal>
#include <functional>

namespace corvalence::test {

/// A forked copy of the test that runs one function and ends with what it returns, without the test's own
/// clean-up. Exit code 99: the function threw. Killed at the latest when this goes.
class ChildProcess {
  public:
    explicit ChildProcess(const std::function<int()>& work);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t id() const noexcept { return id_; }
    void signal(int number) const { ::kill(id_, number); }
    bool isRunning();
    /// Waits for its end. The exit code, or 1000 and the number of the signal that ended it.
    int wait();
    /// Waits until it is stopped or has ended; true where it is stopped.
    bool waitForStop();
    /// Waits until it sleeps in a call of the system, or has ended.
    void waitForSleep() const;

  private:
    pid_t id_ = -1;
    bool hasEnded_ = false;
    int result_ = 0;
};

/// What a function returns in a child process.
int inChild(const std::function<int()>& work);
/// The same as a user without any rights of root, with one more group where one is given. Needs root.
int inChildAs(uid_t user, const std::function<int()>& work, gid_t extraGroup = static_cast<gid_t>(-1));

inline constexpr uid_t kNobody = 65534;

bool isRoot();

}  // namespace corvalence::test
