#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "child_process.h"
#include "console.h"
#include "mail_server.h"

// The built program as users and scripts meet it: its descriptors, its signals, its environment.

namespace corvalence::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr int kSignalled = 1000;  // ChildProcess adds the signal's number

class Program : public testing::Test {
  protected:
    void SetUp() override {
        if (!console.system.process.isAdministrator())
            GTEST_SKIP() << "the program serves administrators only";
    }

    /// Replaces the child with the program. Its standard input is a file of the test's folder.
    int become(const std::vector<std::string>& arguments, const std::string& input = "password") const {
        redirect(input, O_RDONLY, STDIN_FILENO);
        redirect("out", O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
        redirect("err", O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
        return execute(arguments);
    }
    void redirect(const std::string& name, int flags, int descriptor) const {
        ::dup2(::open((console.folder / name).c_str(), flags, 0600), descriptor);
    }
    int execute(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), CORVALENCECTL);
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        ::execv(CORVALENCECTL, pointers.data());
        return 127;
    }
    std::vector<std::string> atHome(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--home", console.home()});
        return arguments;
    }
    int run(const std::vector<std::string>& arguments, const std::string& input = "password") const {
        return inChild([&] { return become(atHome(arguments), input); });
    }
    std::string out() const { return console.folder.read("out"); }
    std::string err() const { return console.folder.read("err"); }

    /// An add of so many files that there is time to do something in its middle; stands still there.
    std::unique_ptr<ChildProcess> startLargeAdd() {
        for (int i = 0; i < kFiles; ++i)
            console.write(std::to_string(i), std::string(1000, 'p'));
        EXPECT_EQ(run({"init"}), 0);
        EXPECT_EQ(run({"create", "file-contents", "db"}), 0);
        auto adding = std::make_unique<ChildProcess>([&] {
            return become(atHome({"add", "db", "--location", console.folder / "files"}));
        });
        const auto container = console.home("Backup Files/Backup File 1");
        while (adding->isRunning() && std::filesystem::file_size(container) < 100'000)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (adding->isRunning()) adding->signal(SIGSTOP);
        EXPECT_TRUE(adding->waitForStop()) << "the add was over too early";
        return adding;
    }
    int listed() {
        EXPECT_EQ(run({"details", "db", "--json"}), 0) << err();
        return nlohmann::json::parse(out()).at("listed").get<int>();
    }

    static constexpr int kFiles = 4000;
    Console console;
    std::string password = console.folder.write("password", "secret\n");
};

TEST_F(Program, takesThePasswordFromWhateverDescriptor) {
    ASSERT_EQ(run({"init"}), 0);
    ASSERT_EQ(run({"create", "file-contents", "db"}), 0) << err();
    console.folder.write("nothing", "");
    EXPECT_EQ(run({"databases", "--password-file", password}, "nothing"), 0);
    EXPECT_EQ(inChild([&] {
                  redirect("password", O_RDONLY, 3);
                  return become(atHome({"databases", "--password-file", "/dev/fd/3"}), "out");
              }),
              0);
    // A pipe gives no more than it has.
    EXPECT_EQ(inChild([&] {
                  int ends[2];
                  if (::pipe(ends) != 0 || ::write(ends[1], "secret\n", 7) != 7) return 1;
                  ::dup2(ends[0], 5);
                  return become(atHome({"databases", "--password-file", "/dev/fd/5"}), "out");
              }),
              0);
    EXPECT_EQ(run({"databases"}, "nothing"), 3);
    EXPECT_EQ(err(), "no password was given\n");
    console.folder.write("wrong", "wrong\n");
    EXPECT_EQ(run({"databases"}, "wrong"), 3);
    EXPECT_EQ(err(), "refused\n");
}

TEST_F(Program, aSignalInTheMiddleKeepsWhatIsComplete) {
    const auto adding = startLargeAdd();
    adding->signal(SIGTERM);
    adding->signal(SIGCONT);
    EXPECT_EQ(adding->wait(), 5) << err();
    EXPECT_THAT(err(),
                HasSubstr("Would you like to keep the files added before you pressed Cancel? [yes]\n"));
    EXPECT_THAT(console.leftovers(), IsEmpty());
    const int kept = listed();
    EXPECT_GT(kept, 0);
    EXPECT_LT(kept, kFiles);
    EXPECT_EQ(run({"check", "db"}), 0);
}

TEST_F(Program, aKilledRunIsClearedAwayByTheNext) {
    const auto adding = startLargeAdd();
    adding->signal(SIGKILL);
    EXPECT_EQ(adding->wait(), kSignalled + SIGKILL);
    EXPECT_THAT(console.leftovers(), Not(IsEmpty()));
    EXPECT_EQ(run({"databases"}), 0) << out();
    EXPECT_THAT(console.leftovers(), IsEmpty());
    EXPECT_EQ(listed(), 0);
}

TEST_F(Program, aSecondRunWaitsOrIsRefused) {
    const auto adding = startLargeAdd();
    const auto other = [&](const std::string& seconds) {
        redirect("password", O_RDONLY, STDIN_FILENO);
        redirect("out2", O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
        redirect("err2", O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
        return execute(atHome({"details", "db", "--json", "--wait", seconds}));
    };
    EXPECT_EQ(inChild([&] { return other("0"); }), 3);
    EXPECT_EQ(console.folder.read("err2"), "Corvalence is already running.\n");
    ChildProcess waiting([&] { return other("300"); });
    adding->signal(SIGCONT);
    EXPECT_EQ(adding->wait(), 0);
    EXPECT_EQ(waiting.wait(), 0) << console.folder.read("err2");
    EXPECT_EQ(nlohmann::json::parse(console.folder.read("out2")).at("listed"), kFiles);
}

TEST_F(Program, aReaderThatGoesAwayLeavesNoPlainCopy) {
    for (int i = 0; i < 1000; ++i)
        console.write(std::to_string(i), "1");
    ASSERT_EQ(run({"init"}), 0);
    ASSERT_EQ(run({"create", "file-contents", "db"}), 0);
    ASSERT_EQ(run({"add", "db", "--location", console.folder / "files"}), 0);
    EXPECT_EQ(inChild([&] {
                  int ends[2];
                  if (::pipe(ends) != 0) return 1;
                  ::close(ends[0]);
                  redirect("password", O_RDONLY, STDIN_FILENO);
                  redirect("err", O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
                  ::dup2(ends[1], STDOUT_FILENO);
                  return execute(atHome({"files", "db"}));
              }),
              4);
    EXPECT_THAT(console.leftovers(), IsEmpty());
}

TEST_F(Program, aClosedOutputIsAFailureAndNoFilesPlace) {
    console.write("a", "1");
    ASSERT_EQ(run({"init"}), 0);
    ASSERT_EQ(run({"create", "file-contents", "db"}), 0);
    for (const int closed : {STDOUT_FILENO, STDERR_FILENO}) {
        EXPECT_EQ(inChild([&] {
                      redirect("password", O_RDONLY, STDIN_FILENO);
                      redirect("out", O_WRONLY, STDOUT_FILENO + STDERR_FILENO - closed);
                      ::close(closed);
                      return execute(atHome({"add", "db", console.path("a"), console.path("none")}));
                  }),
                  closed == STDOUT_FILENO ? 4 : 1);
        EXPECT_EQ(console.folder.read("home/lock"), "");  // the first file that a run opens
    }
    EXPECT_EQ(inChild([&] {
                  ::close(STDIN_FILENO);
                  redirect("err", O_WRONLY, STDERR_FILENO);
                  return execute(atHome({"databases"}));
              }),
              3);
    EXPECT_EQ(run({"check", "db"}), 0) << err();
    EXPECT_THAT(out(), HasSubstr("Files Identical: 1\n"));
}

TEST_F(Program, withoutAHomeWorksInTheUsersOwnFolders) {
    const auto runWith = [&](const std::vector<std::pair<const char*, std::string>>& variables) {
        return inChild([&] {
            for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"})
                ::unsetenv(name);
            for (const auto& [name, value] : variables)
                ::setenv(name, value.c_str(), 1);
            return become({"init"});
        });
    };
    EXPECT_EQ(runWith({{"HOME", console.folder / "user"}}), 0) << err();
    EXPECT_TRUE(console.folder.has("user/.config/corvalence/settings.json"));
    EXPECT_TRUE(console.folder.has("user/.local/share/corvalence/Backup Files/Database Index"));
    EXPECT_EQ(runWith({{"HOME", console.folder / "user"},
                       {"XDG_DATA_HOME", console.folder / "data/"},
                       {"XDG_CONFIG_HOME", console.folder / "config"}}),
              0)
        << err();
    EXPECT_TRUE(console.folder.has("config/corvalence/settings.json"));
    EXPECT_TRUE(console.folder.has("data/corvalence/Databases"));
    // Folders that are not absolute count as not given; the first installation is found.
    EXPECT_EQ(runWith({{"HOME", console.folder / "user"}, {"XDG_DATA_HOME", "x"}, {"XDG_CONFIG_HOME", ""}}),
              3);
    EXPECT_THAT(err(), HasSubstr(console.folder / "user/.local/share/corvalence/"));
}

TEST_F(Program, doesNotShowAPasswordThatIsTyped) {
    ASSERT_EQ(run({"init"}), 0);
    int screen = -1;
    const pid_t id = ::forkpty(&screen, nullptr, nullptr, nullptr);
    if (id == 0) ::_exit(execute(atHome({"create", "file-contents", "db"})));
    ASSERT_GT(id, 0);
    std::string seen;
    const auto readUntil = [&](const std::string& expected) {
        char byte = 0;
        while (!seen.ends_with(expected) && ::read(screen, &byte, 1) == 1)
            seen.push_back(byte);
    };
    for (const char* prompt : {"New password: ", "New password again: "}) {
        readUntil(prompt);
        EXPECT_EQ(::write(screen, "s3cret\n", 7), 7);
    }
    readUntil("\x04never");  // to the end
    int status = -1;
    ::waitpid(id, &status, 0);
    ::close(screen);
    EXPECT_EQ(status, 0) << seen;
    EXPECT_THAT(seen, HasSubstr("created [SHA-256]."));
    EXPECT_THAT(seen, Not(HasSubstr("s3cret")));
}

TEST_F(Program, sendsAMailAndLeavesAServerThatHangsAtASignal) {
    EXPECT_EQ(run({"init"}), 0);
    EXPECT_EQ(run({"config", "set", "email-recipient", "admin@example.org"}), 0);
    EXPECT_EQ(run({"config", "set", "mail-sender", "watch@example.org"}), 0);
    const MailServerProcess server({"--tls", "starttls"});
    EXPECT_EQ(run({"config", "set", "mail-server", server.url()}), 0);
    EXPECT_EQ(run({"mail", "test"}), 4);
    EXPECT_THAT(err(), AllOf(HasSubstr("localhost:"), HasSubstr("certificate")));
    EXPECT_EQ(run({"config", "set", "mail-authorities", server.certificate()}), 0);
    EXPECT_EQ(run({"mail", "test"}), 0) << err();
    EXPECT_EQ(server.mail()["to"][0], "admin@example.org");
    EXPECT_TRUE(server.mail()["tls"]);

    const MailServerProcess hanging({"--hang", "connect"});
    EXPECT_EQ(run({"config", "set", "mail-server", hanging.url()}), 0);
    ChildProcess sending([&] { return become(atHome({"mail", "test"})); });
    while (sending.isRunning() && !hanging.hangs())
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_TRUE(sending.isRunning());
    const auto begin = std::chrono::steady_clock::now();
    sending.signal(SIGTERM);
    EXPECT_EQ(sending.wait(), 5);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

}  // namespace
}  // namespace corvalence::test
