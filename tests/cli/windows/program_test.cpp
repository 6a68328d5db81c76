#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "console.h"
#include "platform/windows/wide.h"
#include "start_program.h"

// The built program as users and scripts meet it: its arguments, its streams, its end by force.

namespace corvalence::test {
namespace {

using platform::windows_system::Handle;
using testing::HasSubstr;

class Program : public testing::Test {
  protected:
    void SetUp() override {
        if (!console.system.process.isAdministrator())
            GTEST_SKIP() << "the program serves administrators only";
    }

    Handle openStream(const std::string& name, bool writes) const {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        return Handle(::CreateFileW(platform::windows_system::systemPath(console.folder / name).c_str(),
                                    writes ? GENERIC_WRITE : GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    &inherited, writes ? CREATE_ALWAYS : OPEN_EXISTING, 0, nullptr));
    }
    Handle start(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--home", console.home()});
        const Handle in = openStream("password", false);
        const Handle out = openStream("out", true);
        const Handle err = openStream("err", true);
        return startProgram(CORVALENCECTL, arguments, in.get(), out.get(), err.get());
    }
    int run(const std::vector<std::string>& arguments) const { return exitCodeOf(start(arguments)); }
    std::string out() const { return console.folder.read("out"); }
    std::string err() const { return console.folder.read("err"); }

    Console console;
    std::string password = console.folder.write("password", "secret\r\n");
};

TEST_F(Program, doesADaysWorkOnNamesBeyondTheCodePage) {
    const std::string name = "\xD0\x96 \"\xE4\xB8\xAD\".txt";
    const std::string file = canBeNamed(name) ? name : "\xD0\x96 \xE4\xB8\xAD.txt";
    console.write(file, "one");
    ASSERT_EQ(run({"init"}), 0) << err();
    ASSERT_EQ(run({"create", "file-contents", "db"}), 0) << err();
    ASSERT_EQ(run({"add", "db", console.path(file)}), 0) << err();
    ASSERT_EQ(run({"check", "db"}), 0) << err();
    console.write(file, "two");
    EXPECT_EQ(run({"check", "db", "--on-change", "ignore"}), 1) << err();
    // Bytes as they are: UTF-8, and line feeds alone.
    EXPECT_THAT(out(), HasSubstr(console.path(file) + " has been changed!\n"));
    EXPECT_EQ(out().find('\r'), std::string::npos);
    EXPECT_EQ(run({"restore", "db", console.path(file)}), 0) << err();
    EXPECT_EQ(console.read(file), "one");
    EXPECT_EQ(readWholeFile(console.home("Changed Files/" + file + ".CHANGED")), "two");
    EXPECT_EQ(run({"check", "db"}), 0) << err();
    EXPECT_EQ(run({"--yes", "delete", "db"}), 0) << err();
    EXPECT_FALSE(std::filesystem::exists(console.home("Databases/db")));
}

TEST_F(Program, isClearedUpAfterWhereItWasEndedByForce) {
    constexpr int kFiles = 2000;
    for (int i = 0; i < kFiles; ++i)
        console.write(std::to_string(i), std::string(1000, 'p'));
    ASSERT_EQ(run({"init"}), 0);
    ASSERT_EQ(run({"create", "file-contents", "db"}), 0);
    const Handle adding = start({"add", "db", "--location", console.folder / "files"});
    const std::string container = console.home("Backup Files/Backup File 1");
    while (::WaitForSingleObject(adding.get(), 1) == WAIT_TIMEOUT) {
        const auto status = console.system.files.status(container, platform::Follow::No);
        if (status && status->size >= 100'000) break;
    }
    ASSERT_TRUE(::TerminateProcess(adding.get(), 77));
    ASSERT_EQ(exitCodeOf(adding), 77) << "the add was over too early";
    EXPECT_THAT(console.leftovers(), testing::Not(testing::IsEmpty()));
    EXPECT_EQ(run({"check", "db"}), 0) << err();
    EXPECT_THAT(console.leftovers(), testing::IsEmpty());
    EXPECT_EQ(run({"add", "db", "--location", console.folder / "files"}), 0) << err();
    EXPECT_EQ(run({"check", "db"}), 0) << err();
    EXPECT_THAT(out(), HasSubstr("Files Identical: 2000\n"));
}

TEST_F(Program, tellsWhyItRefuses) {
    EXPECT_EQ(run({"databases"}), 3);
    EXPECT_THAT(err(), HasSubstr("There is no installation here."));
    EXPECT_EQ(run({"no-such-command"}), 2);
    ASSERT_EQ(run({"init"}), 0);
    ASSERT_EQ(run({"create", "file-contents", "db"}), 0);
    console.folder.write("password", "wrong\r\n");
    EXPECT_EQ(run({"databases"}), 3);
    EXPECT_EQ(err(), "refused\n");
    // One program at a time.
    const auto lock = console.system.process.lockInstallation(console.home(), std::chrono::milliseconds(0));
    EXPECT_EQ(run({"databases", "--wait", "0"}), 3);
    EXPECT_THAT(err(), HasSubstr("already running"));
}

}  // namespace
}  // namespace corvalence::test
