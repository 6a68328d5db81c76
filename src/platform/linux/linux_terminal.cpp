#include "platform/linux/linux_terminal.h"

#include <poll.h>
#include <string.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "platform/linux/descriptor.h"

namespace corvalence::platform::linux_system {

namespace {

/// The longest line that a terminal hands on at once.
constexpr std::size_t kLineLimit = 4095;

constexpr std::array kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

/// Holds back the signals that would end or stop the process; they take effect when this goes. Ignored ones
/// are left alone.
class HeldSignals {
  public:
    HeldSignals() {
        ::sigemptyset(&held_);
        for (const int number : kEndingSignals)
            hold(number);
        hold(SIGTSTP);
        ::pthread_sigmask(SIG_BLOCK, &held_, &before_);
        arrival_ = Descriptor(::signalfd(-1, &held_, SFD_CLOEXEC | SFD_NONBLOCK));
    }
    ~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    /// A descriptor that is ready to be read as soon as one has arrived; -1 where the system gave none.
    int arrival() const noexcept { return arrival_.number(); }

    bool isEnding() const {
        sigset_t pending{};
        ::sigpending(&pending);
        for (const int number : kEndingSignals) {
            if (::sigismember(&held_, number) == 1 && ::sigismember(&pending, number) == 1) return true;
        }
        return false;
    }

  private:
    void hold(int number) {
        struct sigaction action {};
        if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            ::sigaddset(&held_, number);
        }
    }

    sigset_t held_{};
    sigset_t before_{};
    Descriptor arrival_;
};

/// Echo is off while this lives, if it could be turned off.
class SilentInput {
  public:
    explicit SilentInput(int terminal) : terminal_(terminal) {
        if (::tcgetattr(terminal, &before_) != 0) return;
        termios silent = before_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHOE | ECHOK | ECHONL);
        changed_ = ::tcsetattr(terminal, TCSAFLUSH, &silent) == 0;
        termios now{};
        isSilent_ = changed_ && ::tcgetattr(terminal, &now) == 0 && (now.c_lflag & ECHO) == 0;
    }
    ~SilentInput() {
        if (changed_) ::tcsetattr(terminal_, TCSADRAIN, &before_);
    }
    SilentInput(const SilentInput&) = delete;
    SilentInput& operator=(const SilentInput&) = delete;

    bool isSilent() const noexcept { return isSilent_; }

  private:
    int terminal_;
    termios before_{};
    bool changed_ = false;
    bool isSilent_ = false;
};

enum class Ready { Input, Signal, Failed };

Ready waitFor(int input, int signals) {
    std::array<pollfd, 2> ports = {pollfd{input, POLLIN, 0}, pollfd{signals, POLLIN, 0}};
    while (::poll(ports.data(), ports.size(), -1) < 0) {
        if (errno != EINTR) return Ready::Failed;
    }
    return ports[1].revents != 0 ? Ready::Signal : Ready::Input;
}

void wipe(std::string& text) {
    ::explicit_bzero(text.data(), text.capacity());
    text.clear();
}

}  // namespace

bool LinuxTerminal::isInteractive() {
    return ::isatty(input_) == 1 && ::isatty(error_) == 1;
}
bool LinuxTerminal::inputIsTerminal() {
    return ::isatty(input_) == 1;
}
bool LinuxTerminal::outputIsTerminal() {
    return ::isatty(output_) == 1;
}
bool LinuxTerminal::errorIsTerminal() {
    return ::isatty(error_) == 1;
}

void LinuxTerminal::show(const std::string& text) const {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t count = ::write(error_, text.data() + done, text.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;  // a prompt that nobody can see asks nothing of its caller
        done += static_cast<std::size_t>(count);
    }
}

LinuxTerminal::Answer LinuxTerminal::readOnce(bool echo, const std::string& prompt, std::string& line) const {
    const HeldSignals signals;
    if (signals.arrival() < 0 || process_.cancelRequested()) return Answer::None;
    std::optional<SilentInput> silence;
    if (!echo) {
        silence.emplace(input_);
        if (!silence->isSilent()) return Answer::None;
    }
    show(prompt);
    for (;;) {
        const Ready ready = waitFor(input_, signals.arrival());
        if (ready == Ready::Signal) {
            show("\n");
            return signals.isEnding() ? Answer::None : Answer::Stopped;
        }
        char byte = '\0';
        const ssize_t count = ready == Ready::Input ? ::read(input_, &byte, 1) : 0;
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        const bool isEnd = count <= 0;
        if (isEnd || byte == '\n') {
            if (!echo) show("\n");
            return isEnd && line.empty() ? Answer::None : Answer::Line;
        }
        if (line.size() == kLineLimit) {
            ::tcflush(input_, TCIFLUSH);
            return Answer::None;
        }
        line.push_back(byte);
    }
}

std::optional<std::string> LinuxTerminal::read(bool echo, const std::string& prompt) const {
    std::string line;
    line.reserve(kLineLimit);  // never moved, so that no copy of a secret is left behind
    for (;;) {
        const Answer answer = readOnce(echo, prompt, line);
        if (answer == Answer::Line) return line;
        wipe(line);
        // Stopped and continued: what was typed is gone, the question is asked anew.
        if (answer == Answer::None) return std::nullopt;
    }
}

std::optional<std::string> LinuxTerminal::readSecret(const std::string& prompt) {
    return read(false, prompt);
}
std::optional<std::string> LinuxTerminal::readLine(const std::string& prompt) {
    return read(true, prompt);
}

}  // namespace corvalence::platform::linux_system
