#include "child_process.h"

#include <grp.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace corvalence::test {

namespace {

int resultOf(int status) {
    return WIFSIGNALED(status) ? 1000 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

ChildProcess::ChildProcess(const std::function<int()>& work) {
    constexpr int kThrew = 99;
    std::fflush(nullptr);
    id_ = ::fork();
    if (id_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that is ended leaves nobody behind
    ::setpgid(0, 0);                     // a group of its own, which can be stopped
    int code = kThrew;
    try {
        code = work();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "child: %s\n", error.what());
    }
    ::_exit(code);
}

ChildProcess::~ChildProcess() {
    if (hasEnded_) return;
    signal(SIGKILL);
    wait();
}

bool ChildProcess::isRunning() {
    int status = 0;
    if (!hasEnded_ && ::waitpid(id_, &status, WNOHANG) == id_) {
        hasEnded_ = true;
        result_ = resultOf(status);
    }
    return !hasEnded_;
}

int ChildProcess::wait() {
    int status = 0;
    while (!hasEnded_) {
        if (::waitpid(id_, &status, 0) == id_) {
            hasEnded_ = true;
            result_ = resultOf(status);
        } else if (errno != EINTR) {
            return -1;
        }
    }
    return result_;
}

bool ChildProcess::waitForStop() {
    int status = 0;
    while (::waitpid(id_, &status, WUNTRACED) != id_) {
        if (errno != EINTR) return false;
    }
    if (WIFSTOPPED(status)) return true;
    hasEnded_ = true;
    result_ = resultOf(status);
    return false;
}

void ChildProcess::waitForSleep() const {
    for (;;) {
        std::ifstream file("/proc/" + std::to_string(id_) + "/stat");
        const std::string text(std::istreambuf_iterator<char>(file), {});
        const std::size_t name = text.rfind(") ");  // the state stands behind it
        if (name == std::string::npos || text.find_first_of("SZ", name) == name + 2) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

int inChild(const std::function<int()>& work) {
    return ChildProcess(work).wait();
}

int inChildAs(uid_t user, const std::function<int()>& work, gid_t extraGroup) {
    return inChild([&] {
        constexpr int kNotAllowed = 98;
        std::vector<gid_t> groups;
        if (extraGroup != static_cast<gid_t>(-1)) groups.push_back(extraGroup);
        if (::setgroups(groups.size(), groups.data()) != 0 || ::setgid(user) != 0 || ::setuid(user) != 0) {
            return kNotAllowed;
        }
        return work();
    });
}

bool isRoot() {
    return ::geteuid() == 0;
}

}  // namespace corvalence::test
