#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <thread>

#include "child_process.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

/// The built program on an installation of its own, killed like any process may be.
class SigKill : public testing::Test {
  protected:
    static constexpr int kFiles = 40;
    static constexpr int kRounds = 24;

    int become(std::vector<std::string> arguments) const {
        const std::vector<std::string> front = {
            CORVALENCECTL,       "--home", folder / "home", "--password-file",
            folder / "password", "--yes",  "--quiet"};
        arguments.insert(arguments.begin(), front.begin(), front.end());
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        const int out = ::open((folder / "out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ::dup2(out, STDOUT_FILENO);
        ::dup2(out, STDERR_FILENO);
        ::execv(CORVALENCECTL, pointers.data());
        return 127;
    }
    int run(const std::vector<std::string>& arguments) const {
        return inChild([&] { return become(arguments); });
    }
    void runAndKill(const std::vector<std::string>& arguments, std::chrono::microseconds after) const {
        ChildProcess child([&] { return become(arguments); });
        std::this_thread::sleep_for(after);
        child.signal(SIGKILL);
        child.wait();
    }

    void change(int round) const {
        for (int i = round % 3; i < kFiles; i += 3)
            folder.write("files/" + std::to_string(i),
                         "round " + std::to_string(round) + std::string(500, 'x'));
    }
    void expectFiles() const {
        int found = 0;
        for (const auto& entry : fs::directory_iterator(folder / "files")) {
            const std::string content = readWholeFile(entry.path().string());
            EXPECT_TRUE(content.starts_with("round ") && content.size() > 500) << entry.path();
            EXPECT_EQ(entry.path().extension(), "") << entry.path();
            ++found;
        }
        EXPECT_EQ(found, kFiles);
    }

    const TempFolder folder{quickFolder()};
};

TEST_F(SigKill, AtAnyMomentLosesNothing) {
    SystemBackEnd system;
    if (!system.process.isAdministrator()) GTEST_SKIP() << "the program serves administrators only";
    folder.write("password", "open sesame\n");
    for (int i = 0; i < kFiles; ++i)
        folder.write("files/" + std::to_string(i), "round 0" + std::string(500, 'x'));
    ASSERT_EQ(run({"init"}), 0);
    ASSERT_EQ(run({"create", "file-contents", "db"}), 0);
    ASSERT_EQ(run({"add", "db", "--location", folder / "files"}), 0) << folder.read("out");
    const auto start = steady_clock::now();
    ASSERT_EQ(run({"check", "db"}), 0);
    const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(steady_clock::now() - start);

    std::mt19937 numbers(std::random_device{}());
    std::uniform_int_distribution<long> moment(0, whole.count() * 5 / 4);
    const char* const reactions[] = {"update", "update-keep-backup", "ignore"};
    for (int round = 1; round <= kRounds; ++round) {
        change(round);
        const std::chrono::microseconds after(moment(numbers));
        SCOPED_TRACE("round " + std::to_string(round) + ", killed after " + std::to_string(after.count()) +
                     " us");
        runAndKill({"check", "db", "--on-change", reactions[round % 3]}, after);
        const int code = run({"check", "db", "--on-change", "update"});
        EXPECT_TRUE(code == 0 || code == 1) << folder.read("out");
        EXPECT_EQ(run({"check", "db"}), 0) << folder.read("out");
        EXPECT_EQ(readWholeFile(folder / "home/Working Copies"), "");
        expectFiles();
        ASSERT_FALSE(HasFailure());
    }
}

}  // namespace
}  // namespace corvalence::test
