#include <gtest/gtest.h>
#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include "failure_of.h"
#include "platform/windows/handle.h"
#include "platform/windows/token.h"
#include "platform/windows/wide.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using platform::AccessEntry;
using platform::AccountState;

constexpr std::uint32_t kFull = 0xF01FF;
constexpr std::uint32_t kReadAndExecute = 0x200A9;

/// A folder that is its owner's alone, and lists put on files in it as they stand: nothing is handed down.
class AccessLists : public testing::Test {
  protected:
    AccessLists() {
        path_ = folder_ / "owned";
        system_.files.createFolder(path_);
        path_ += "\\a";
        writeWholeFile(path_, "x");
    }
    /// False where the system keeps another list than this.
    bool set(const std::wstring& sddl) {
        platform::windows_system::LocalMemory<PSECURITY_DESCRIPTOR> descriptor;
        EXPECT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(sddl.c_str(), SDDL_REVISION_1,
                                                                           descriptor.out(), nullptr));
        return ::SetFileSecurityW(platform::windows_system::systemPath(path_).c_str(),
                                  DACL_SECURITY_INFORMATION, descriptor.get()) != FALSE;
    }
    std::vector<AccessEntry> read() { return system_.accessLists.read(path_).value(); }
    std::size_t strengthen() {
        return system_.accessLists.removeEntries(path_, [](const AccessEntry& each) {
            return !each.isAdministrators && (each.rights & kFull) != kFull;
        });
    }

    SystemBackEnd system_;
    TempFolder folder_;
    std::string path_;
};

TEST_F(AccessLists, areReadTightenedAndReadAgain) {
    ASSERT_TRUE(
        set(L"D:P(A;;FA;;;SY)(A;;FA;;;" + platform::windows_system::userSidText() + L")(A;;FRFX;;;WD)"));
    auto entries = read();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0], (AccessEntry{AccountState::Known, "SYSTEM", "NT AUTHORITY", kFull, false}));
    EXPECT_EQ(entries[1].state, AccountState::Known);
    EXPECT_EQ(entries[1].rights, kFull);
    EXPECT_EQ(entries[2].account, "Everyone");
    EXPECT_EQ(entries[2].rights, kReadAndExecute);

    EXPECT_EQ(strengthen(), 1U);
    entries.pop_back();
    EXPECT_EQ(read(), entries);
    EXPECT_EQ(strengthen(), 0U);
    EXPECT_EQ(read(), entries);
}

TEST_F(AccessLists, tellTheAdministratorsAndWhomNobodyKnows) {
    ASSERT_TRUE(set(L"D:P(A;;FR;;;BA)(D;;FW;;;S-1-5-21-1-2-3-4711)(A;;GA;;;SY)"));
    const auto entries = read();
    if (entries.size() != 3 || !entries[0].isAdministrators) {
        GTEST_SKIP() << "this system keeps no list as it was set, but one made from the file's mode";
    }
    EXPECT_EQ(entries[0].rights, 0x20089U);
    EXPECT_EQ(entries[1], (AccessEntry{AccountState::Unnamed, "", "", 0x20116, false}));
    EXPECT_EQ(entries[2].rights, kFull);
    EXPECT_EQ(strengthen(), 1U);
    EXPECT_EQ(read(), (std::vector<AccessEntry>{entries[0], entries[2]}));
}

TEST_F(AccessLists, ofMissingFilesAreAFailure) {
    EXPECT_EQ(causeOf([&] { system_.accessLists.read(folder_ / "none"); }), base::Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] {
                  system_.accessLists.removeEntries(folder_ / "none", [](const auto&) { return true; });
              }),
              base::Cause::FileNotFound);
}

}  // namespace
}  // namespace corvalence::test
