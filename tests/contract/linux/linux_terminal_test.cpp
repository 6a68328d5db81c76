#include "platform/linux/linux_terminal.h"

#include <fcntl.h>
#include <gmock/gmock.h>
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

using platform::linux_system::LinuxTerminal;

/// A terminal with a user at it.
class AtATerminal : public testing::Test {
  protected:
    AtATerminal() { EXPECT_EQ(::openpty(&user_, &program_, nullptr, nullptr, nullptr), 0); }
    ~AtATerminal() override {
        ::close(user_);
        ::close(program_);
    }
    void type(std::string_view text) const {
        EXPECT_EQ(::write(user_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    /// What appears on the screen, up to an expected text.
    std::string screenUntil(std::string_view expected) const {
        constexpr int kPatience = 60'000;  // milliseconds
        std::string seen;
        pollfd port{user_, POLLIN, 0};
        while (seen.find(expected) == std::string::npos && ::poll(&port, 1, kPatience) == 1) {
            char byte = 0;
            if (::read(user_, &byte, 1) != 1) break;
            seen.push_back(byte);
        }
        return seen;
    }
    bool echoes() const {
        termios settings{};
        EXPECT_EQ(::tcgetattr(program_, &settings), 0);
        return (settings.c_lflag & ECHO) != 0;
    }
    std::optional<std::string> ask(bool isSecret) {
        LinuxTerminal terminal(process_, program_, program_, program_);
        return isSecret ? terminal.readSecret("Ask: ") : terminal.readLine("Ask: ");
    }
    /// The answer to a question that the user answers by typing this.
    std::optional<std::string> answerTo(bool isSecret, const std::string& typed) {
        auto answer = std::async(std::launch::async, [&] { return ask(isSecret); });
        EXPECT_EQ(screenUntil("Ask: "), "Ask: ");
        EXPECT_EQ(echoes(), !isSecret);
        type(typed);
        return answer.get();
    }

    int user_ = -1;
    int program_ = -1;
    platform::linux_system::LinuxProcess process_;
};

TEST_F(AtATerminal, aSecretIsReadWithoutEchoAndALineWithIt) {
    for (const std::string secret : {"s3cret \xC3\xA4", "", "\xFF*"}) {
        EXPECT_EQ(answerTo(true, secret + "\n"), secret);
        EXPECT_EQ(screenUntil("\n"), "\r\n");
        EXPECT_TRUE(echoes());
    }
    EXPECT_EQ(answerTo(false, "wrong\x15right\n"), "right");
    EXPECT_THAT(screenUntil("right\r\n"), testing::EndsWith("right\r\n"));
}

TEST_F(AtATerminal, endOfInputIsNoAnswer) {
    EXPECT_EQ(answerTo(false, "\x04"), std::nullopt);
    EXPECT_EQ(answerTo(true, "\x04"), std::nullopt);
    EXPECT_TRUE(echoes());
}

TEST_F(AtATerminal, isInteractiveOnlyWhereBothEndsAreTerminals) {
    const int file = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    EXPECT_FALSE(LinuxTerminal(process_, file, program_, program_).isInteractive());
    EXPECT_FALSE(LinuxTerminal(process_, program_, program_, file).isInteractive());
    LinuxTerminal terminal(process_, program_, file, program_);
    EXPECT_TRUE(terminal.isInteractive() && terminal.errorIsTerminal());
    EXPECT_FALSE(terminal.outputIsTerminal());
    ::close(file);
}

TEST_F(AtATerminal, aSignalThatEndsTheProcessFindsEchoBack) {
    ChildProcess program([&] {
        std::signal(SIGTERM, SIG_DFL);
        return ask(true) ? 1 : 2;
    });
    screenUntil("Ask: ");
    type("half a sec");
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 1000 + SIGTERM);
    EXPECT_TRUE(echoes());
}

TEST_F(AtATerminal, aCancelSignalEndsEveryQuestion) {
    for (const bool isSecret : {true, false}) {
        ChildProcess program([&] {
            process_.catchCancelSignals();
            if (ask(isSecret) || !process_.cancelRequested()) return 1;
            return ask(isSecret) ? 2 : 0;  // and those that would follow
        });
        screenUntil("Ask: ");
        program.signal(SIGINT);
        EXPECT_EQ(program.wait(), 0);
        EXPECT_TRUE(echoes());
    }
}

TEST_F(AtATerminal, aStoppedProgramLeavesEchoOnAndAsksAgain) {
    ChildProcess program([&] {
        std::signal(SIGTSTP, SIG_DFL);
        return ask(true) == "typed" ? 0 : 1;
    });
    screenUntil("Ask: ");
    program.signal(SIGTSTP);
    ASSERT_TRUE(program.waitForStop());
    EXPECT_TRUE(echoes());
    program.signal(SIGCONT);
    screenUntil("Ask: ");
    EXPECT_FALSE(echoes());
    type("typed\n");
    EXPECT_EQ(program.wait(), 0);
}

TEST(FromAPipe, linesAreTakenOneByOneAndSecretsRefused) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    platform::linux_system::LinuxProcess process;
    LinuxTerminal terminal(process, ends[0], null, null);
    const std::string longest(4095, 'x');
    const std::string input = "first\nsecond \n\n" + longest + "\n" + longest + "y\nlast";
    EXPECT_EQ(::write(ends[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
    ::close(ends[1]);
    EXPECT_EQ(terminal.readSecret(""), std::nullopt);
    for (const std::string& line : {std::string("first"), std::string("second "), std::string(), longest})
        EXPECT_EQ(terminal.readLine(""), line);
    EXPECT_EQ(terminal.readLine(""), std::nullopt);  // a line without measure is refused
    EXPECT_EQ(terminal.readLine(""), "");
    EXPECT_EQ(terminal.readLine(""), "last");
    EXPECT_EQ(terminal.readLine(""), std::nullopt);
    ::close(ends[0]);
    ::close(null);
}

}  // namespace
}  // namespace corvalence::test
