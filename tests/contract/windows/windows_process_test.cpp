#include "platform/windows/windows_process.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "failure_of.h"
#include "platform/windows/handle.h"
#include "platform/windows/token.h"
#include "platform/windows/windows_terminal.h"
#include "platform/windows/windows_volumes.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using namespace platform::windows_system;
using std::chrono::milliseconds;

constexpr const wchar_t* kMutex = L"Corvalence-5b1e07a4-d2c6-4f19-a0be-7c93e1d4f266";

bool isThere(const wchar_t* mutex) {
    return Handle(::OpenMutexW(SYNCHRONIZE, FALSE, mutex)).isOpen();
}

TEST(InstanceLock, isHeldOnceForEachInstallation) {
    const TempFolder own;
    const TempFolder other;
    WindowsProcess process(own.path());
    auto lock = process.lockInstallation(own.path(), milliseconds(0));
    ASSERT_NE(lock, nullptr);
    EXPECT_TRUE(isThere(kMutex));
    EXPECT_EQ(process.lockInstallation(own.path(), milliseconds(60)), nullptr);
    EXPECT_EQ(WindowsProcess(own.path()).lockInstallation(own.path(), milliseconds(0)), nullptr);
    lock.reset();
    EXPECT_FALSE(isThere(kMutex));

    lock = process.lockInstallation(other.path(), milliseconds(0));
    ASSERT_NE(lock, nullptr);
    EXPECT_FALSE(isThere(kMutex));
    std::string again = other.path();  // the same folder by another text
    again.pop_back();
    again.back() = static_cast<char>(::toupper(again.back()));
    EXPECT_EQ(process.lockInstallation(again, milliseconds(0)), nullptr);
    EXPECT_NE(process.lockInstallation(own.path(), milliseconds(0)), nullptr);
    EXPECT_EQ(causeOf([&] { process.lockInstallation(other / "none", milliseconds(0)); }),
              base::Cause::FileNotFound);
}

TEST(WindowsProcesses, tellTheirFolderAndWhoRunsThem) {
    WindowsProcess process("C:\\own\\");
    EXPECT_EQ(process.currentFolder().substr(1, 2), ":\\");
    EXPECT_EQ(process.programFile().substr(1, 2), ":\\");
    EXPECT_TRUE(process.programFile().ends_with("\\contract_tests.exe")) << process.programFile();
    if (!process.isAdministrator()) GTEST_SKIP() << "an administrator's privileges are needed";
    EXPECT_TRUE(setPrivilege(SE_BACKUP_NAME, true));
    EXPECT_TRUE(setPrivilege(SE_BACKUP_NAME, false));
    EXPECT_FALSE(setPrivilege(L"SeNoSuchPrivilege", true));
}

TEST(WindowsTerminals, askNobodyWhereThereIsNoConsole) {
    const TempFolder folder;
    const HANDLE before = ::GetStdHandle(STD_INPUT_HANDLE);
    const Handle file(::CreateFileA(folder.write("typed", "secret\r\n").c_str(), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
    ::SetStdHandle(STD_INPUT_HANDLE, file.get());
    const WindowsProcess process("C:\\own\\");
    WindowsTerminal terminal(process);
    EXPECT_FALSE(terminal.isInteractive());
    EXPECT_FALSE(terminal.inputIsTerminal());
    EXPECT_FALSE(terminal.readSecret("Password: "));
    EXPECT_FALSE(terminal.readLine("Name: "));
    ::SetStdHandle(STD_INPUT_HANDLE, before);
}

TEST(WindowsVolumes, areDrives) {
    WindowsVolumes volumes;
    EXPECT_EQ(volumes.rootOf("C:\\windows\\none\\deeper"), "C:\\");
    EXPECT_EQ(volumes.driveType("C:\\"), platform::DriveType::Fixed);
    EXPECT_EQ(volumes.driveType("Q:\\"), platform::DriveType::Unknown);
}

}  // namespace
}  // namespace corvalence::test
