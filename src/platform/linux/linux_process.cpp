#include "platform/linux/linux_process.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/linux/descriptor.h"
#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

constexpr std::chrono::milliseconds kLockPoll{50};
constexpr std::string_view kRemovedMark = " (deleted)";
constexpr std::array kAdministratorGroups = {"sudo", "wheel", "admin"};
constexpr std::array kCancelSignals = {SIGINT, SIGTERM, SIGHUP};

// A signal handler gets no argument of its own, so what it sets belongs to the process.
std::atomic<bool> cancelFlag{false};
static_assert(std::atomic<bool>::is_always_lock_free, "signal handlers may only touch lock-free objects");

extern "C" void onCancelSignal(int) {
    cancelFlag.store(true, std::memory_order_relaxed);
}

class LockFile : public InstanceLock {
  public:
    explicit LockFile(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

  private:
    Descriptor descriptor_;  // the lock ends with it, however the process ends
};

Descriptor openLock(const std::string& path) {
    constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;
    const int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    Descriptor descriptor(::open(systemPath(path), flags, kOwnerOnly));
    struct stat data {};
    if (!descriptor.isOpen() || ::fstat(descriptor.number(), &data) != 0) throwSystemError(path);
    // The process's mask may have made a file that its own next start could not open.
    if ((data.st_mode & ALLPERMS) != kOwnerOnly && data.st_uid == ::geteuid() &&
        ::fchmod(descriptor.number(), kOwnerOnly) != 0) {
        throwSystemError(path);
    }
    return descriptor;
}

std::vector<gid_t> groupsOfProcess() {
    const int count = ::getgroups(0, nullptr);
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(count, 0)));
    const int filled = ::getgroups(static_cast<int>(groups.size()), groups.data());
    groups.resize(static_cast<std::size_t>(std::max(filled, 0)));
    groups.push_back(::getegid());
    return groups;
}

/// Whether one of the ids is that of a group name; false where there is no such group.
bool holdsGroup(const std::vector<gid_t>& ids, const char* name) {
    std::vector<char> buffer(1024);
    group entry{};
    group* found = nullptr;
    int error = 0;
    while ((error = ::getgrnam_r(name, &entry, buffer.data(), buffer.size(), &found)) == ERANGE) {
        buffer.resize(buffer.size() * 2);
    }
    return error == 0 && found != nullptr && std::find(ids.begin(), ids.end(), entry.gr_gid) != ids.end();
}

}  // namespace

std::unique_ptr<InstanceLock> LinuxProcess::lockInstallation(const std::string& folder,
                                                             std::chrono::milliseconds wait) {
    const std::string path = folder + (folder.empty() || folder.back() != '/' ? "/lock" : "lock");
    Descriptor descriptor = openLock(path);
    const auto deadline = std::chrono::steady_clock::now() + wait;
    while (::flock(descriptor.number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) throwSystemError(path);
        const auto now = std::chrono::steady_clock::now();
        if (cancelRequested() || now >= deadline) return nullptr;
        std::this_thread::sleep_until(std::min(deadline, now + kLockPoll));
    }
    return std::make_unique<LockFile>(std::move(descriptor));
}

bool LinuxProcess::isAdministrator() {
    if (::geteuid() == 0) return true;
    const std::vector<gid_t> ids = groupsOfProcess();
    return std::any_of(kAdministratorGroups.begin(), kAdministratorGroups.end(),
                       [&](const char* name) { return holdsGroup(ids, name); });
}

std::string LinuxProcess::currentFolder() {
    const std::unique_ptr<char, decltype(&std::free)> folder(::getcwd(nullptr, 0), &std::free);
    if (folder == nullptr) throwSystemError(".");
    return folder.get();
}

std::string LinuxProcess::programFile() {
    constexpr const char* kLink = "/proc/self/exe";
    std::string path(PATH_MAX, '\0');
    const ssize_t length = ::readlink(kLink, path.data(), path.size());
    if (length < 0) throwSystemError(kLink);
    path.resize(static_cast<std::size_t>(length));
    // The system marks a program whose file no longer stands at its path.
    struct stat present {};
    if (path.ends_with(kRemovedMark) && ::lstat(path.c_str(), &present) != 0)
        path.resize(path.size() - kRemovedMark.size());
    return path;
}

void LinuxProcess::catchCancelSignals() {
    for (const int number : kCancelSignals) {
        struct sigaction present {};
        ::sigaction(number, nullptr, &present);
        if (number == SIGHUP && present.sa_handler == SIG_IGN) continue;
        // Without SA_RESTART, so that a wait for input ends.
        struct sigaction wanted {};
        wanted.sa_handler = onCancelSignal;
        ::sigemptyset(&wanted.sa_mask);
        ::sigaction(number, &wanted, nullptr);
    }
}

bool LinuxProcess::cancelRequested() const noexcept {
    return cancelFlag.load(std::memory_order_relaxed);
}

}  // namespace corvalence::platform::linux_system
