#include "platform/linux/linux_terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <future>

#include "child_process.h"
#include "platform/linux/linux_process.h"

namespace corvalence::test {
namespace {

/// Two connected ends: those of a terminal, or those of a pipe.
struct Ends {
    explicit Ends(bool isTerminal) {
        if (isTerminal) {
            EXPECT_EQ(::openpty(&user, &program, nullptr, nullptr, nullptr), 0);
            return;
        }
        std::array<int, 2> pipe{};
        EXPECT_EQ(::pipe(pipe.data()), 0);
        program = pipe[0];
        user = pipe[1];
    }
    ~Ends() {
        closeUser();
        ::close(program);
    }
    void closeUser() {
        if (user >= 0) ::close(user);
        user = -1;
    }
    void type(std::string_view text) const {
        EXPECT_EQ(::write(user, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    int program = -1;
    int user = -1;
};

/// A terminal with a user at it.
class AtATerminal : public testing::Test {
  protected:
    /// What appears on the screen, up to an expected text or, without one, as long as something comes.
    std::string screenUntil(std::string_view expected) const {
        std::string seen;
        pollfd port{ends_.user, POLLIN, 0};
        while ((expected.empty() || seen.find(expected) == std::string::npos) &&
               ::poll(&port, 1, expected.empty() ? 200 : 10'000) == 1) {
            char byte = 0;
            if (::read(ends_.user, &byte, 1) != 1) break;
            seen.push_back(byte);
        }
        return seen;
    }
    bool echoes() const {
        termios settings{};
        EXPECT_EQ(::tcgetattr(program_, &settings), 0);
        return (settings.c_lflag & ECHO) != 0;
    }
    std::future<std::optional<std::string>> ask(bool isSecret) {
        return std::async(std::launch::async, [this, isSecret] {
            return isSecret ? terminal_.readSecret("Password: ") : terminal_.readLine("Name: ");
        });
    }

    Ends ends_{true};
    const int program_ = ends_.program;
    platform::linux_system::LinuxProcess process_;
    platform::linux_system::LinuxTerminal terminal_{process_, program_, program_, program_};
};

TEST_F(AtATerminal, aSecretIsReadWithoutEcho) {
    for (const std::string secret : {"s3cret \xC3\xA4", "", "\xFF*"}) {
        auto answer = ask(true);
        EXPECT_EQ(screenUntil("Password: "), "Password: ");
        EXPECT_FALSE(echoes());
        ends_.type(secret + "\n");
        EXPECT_EQ(answer.get(), secret);
        EXPECT_EQ(screenUntil(""), "\r\n");
        EXPECT_TRUE(echoes());
    }
}

TEST_F(AtATerminal, aLineIsReadWithEcho) {
    auto answer = ask(false);
    screenUntil("Name: ");
    ends_.type("wrong\x15right\n");
    EXPECT_EQ(answer.get(), "right");
    EXPECT_NE(screenUntil("").find("right"), std::string::npos);
}

TEST_F(AtATerminal, endOfInputIsNoAnswer) {
    for (const bool isSecret : {true, false}) {
        auto answer = ask(isSecret);
        screenUntil(": ");
        ends_.type("\x04");
        EXPECT_EQ(answer.get(), std::nullopt);
        EXPECT_TRUE(echoes());
    }
}

TEST_F(AtATerminal, isInteractiveOnlyWhereBothEndsAreTerminals) {
    const int file = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    using platform::linux_system::LinuxTerminal;
    EXPECT_TRUE(terminal_.isInteractive());
    EXPECT_FALSE(LinuxTerminal(process_, file, program_, program_).isInteractive());
    EXPECT_FALSE(LinuxTerminal(process_, program_, program_, file).isInteractive());
    EXPECT_TRUE(LinuxTerminal(process_, program_, file, program_).isInteractive());
    EXPECT_FALSE(LinuxTerminal(process_, program_, file, program_).outputIsTerminal());
    EXPECT_FALSE(LinuxTerminal(process_, program_, program_, file).errorIsTerminal());
    EXPECT_TRUE(terminal_.outputIsTerminal() && terminal_.errorIsTerminal());
    ::close(file);
}

TEST_F(AtATerminal, aSignalThatEndsTheProcessFindsEchoBack) {
    ChildProcess program([&] {
        std::signal(SIGTERM, SIG_DFL);
        return terminal_.readSecret("Password: ") ? 1 : 2;
    });
    screenUntil("Password: ");
    EXPECT_FALSE(echoes());
    ends_.type("half a sec");
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 1000 + SIGTERM);
    EXPECT_TRUE(echoes());
}

TEST_F(AtATerminal, aCancelSignalEndsEveryQuestion) {
    for (const bool isSecret : {true, false}) {
        ChildProcess program([&] {
            process_.catchCancelSignals();
            const auto ask = [&] { return isSecret ? terminal_.readSecret(": ") : terminal_.readLine(": "); };
            if (ask() || !process_.cancelRequested()) return 1;
            return ask() ? 2 : 0;  // and those that would follow
        });
        screenUntil(": ");
        program.signal(SIGINT);
        EXPECT_EQ(program.wait(), 0);
        EXPECT_TRUE(echoes());
    }
}

TEST_F(AtATerminal, aStoppedProgramLeavesEchoOnAndAsksAgain) {
    ChildProcess program([&] {
        std::signal(SIGTSTP, SIG_DFL);
        return terminal_.readSecret("Password: ") == "typed" ? 0 : 1;
    });
    screenUntil("Password: ");
    program.signal(SIGTSTP);
    ASSERT_TRUE(program.waitForStop());
    EXPECT_TRUE(echoes());
    program.signal(SIGCONT);
    screenUntil("Password: ");
    EXPECT_FALSE(echoes());
    ends_.type("typed\n");
    EXPECT_EQ(program.wait(), 0);
}

class FromAPipe : public testing::Test {
  protected:
    ~FromAPipe() override { ::close(null_); }

    Ends ends_{false};
    int null_ = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    platform::linux_system::LinuxProcess process_;
    platform::linux_system::LinuxTerminal terminal_{process_, ends_.program, null_, null_};
};

TEST_F(FromAPipe, linesAreTakenOneByOneAndSecretsRefused) {
    ends_.type("first\nsecond \n\nlast");
    ends_.closeUser();
    EXPECT_EQ(terminal_.readSecret(""), std::nullopt);
    EXPECT_EQ(terminal_.readLine(""), "first");
    EXPECT_EQ(terminal_.readLine(""), "second ");
    EXPECT_EQ(terminal_.readLine(""), "");
    EXPECT_EQ(terminal_.readLine(""), "last");
    EXPECT_EQ(terminal_.readLine(""), std::nullopt);
}

TEST_F(FromAPipe, aLineWithoutMeasureIsRefused) {
    ends_.type(std::string(4095, 'x') + "\n" + std::string(4096, 'x') + "\n");
    EXPECT_EQ(terminal_.readLine(""), std::string(4095, 'x'));
    EXPECT_EQ(terminal_.readLine(""), std::nullopt);
}

}  // namespace
}  // namespace corvalence::test
