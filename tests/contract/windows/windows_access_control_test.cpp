#include "platform/windows/windows_access_control.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include "failure_of.h"
#include "platform/windows/handle.h"
#include "platform/windows/token.h"
#include "platform/windows/wide.h"
#include "platform/windows/windows_file_system.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

using namespace platform::windows_system;
using base::Cause;
namespace attribute = platform::attribute;

class Protection : public testing::Test {
  protected:
    std::wstring protectionOf(const std::string& path) {
        constexpr SECURITY_INFORMATION kParts =
            OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
        LocalMemory<PSECURITY_DESCRIPTOR> memory;
        LocalMemory<LPWSTR> text;
        EXPECT_EQ(::GetNamedSecurityInfoW(toWide(path).value().c_str(), SE_FILE_OBJECT, kParts, nullptr,
                                          nullptr, nullptr, nullptr, memory.out()),
                  DWORD{ERROR_SUCCESS});
        ::ConvertSecurityDescriptorToStringSecurityDescriptorW(memory.get(), SDDL_REVISION_1, kParts,
                                                               text.out(), nullptr);
        return text.get() == nullptr ? L"" : text.get();
    }
    void protect(const std::string& path, const wchar_t* list) {
        LocalMemory<PSECURITY_DESCRIPTOR> memory;
        ASSERT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(list, SDDL_REVISION_1,
                                                                           memory.out(), nullptr));
        ASSERT_TRUE(
            ::SetFileSecurityW(toWide(path).value().c_str(), DACL_SECURITY_INFORMATION, memory.get()));
    }

    TempFolder folder_;
    WindowsFileSystem files_;
    WindowsAccessControl access_;
};

TEST_F(Protection, goesFromOneFileToTheOther) {
    const std::string from = folder_.write("from", "changed");
    const std::wstring user = userSidText();
    for (const std::wstring& list :
         {L"D:P(A;;FA;;;" + user + L")(A;;FR;;;WD)", L"D:P(A;;FR;;;" + user + L")"}) {
        protect(from, list.c_str());
        {
            const auto to = files_.createNew(folder_ / "to");
            ASSERT_NE(protectionOf(from), protectionOf(folder_ / "to"));
            access_.copyProtection(from, *to);
        }
        EXPECT_EQ(protectionOf(from), protectionOf(folder_ / "to"));
        files_.remove(folder_ / "to");
    }
    const auto to = files_.createNew(folder_ / "to");
    EXPECT_EQ(causeOf([&] { access_.copyProtection(folder_ / "none", *to); }), Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { access_.copyProtection(folder_.path(), *to); }), Cause::InvalidFile);
}

TEST_F(Protection, setsTheAttributesThatAProgramMaySet) {
    const auto file = files_.createNew(folder_ / "a");
    for (const std::uint32_t word :
         {attribute::kReadOnly | attribute::kHidden | attribute::kArchive, attribute::kArchive}) {
        access_.setAttributes(*file, word | attribute::kFolder | attribute::kCompressed);
        EXPECT_EQ(file->status().attributes, word);
    }
}

TEST_F(Protection, holdsTheFolderOfAFileWhereItIs) {
    folder_.write("x/y/a", "1");
    std::string name;
    {
        const auto pinned = access_.pinFolderOf(folder_ / "x/y/none", name);
        EXPECT_EQ(name, "none");
        EXPECT_EQ(pinned->path(), folder_ / "x/y/");
        EXPECT_EQ(pinned->resolvedPath(), pinned->path());
        for (const char* held : {"x/y", "x"})
            EXPECT_FALSE(::MoveFileW(toWide(folder_ / held)->c_str(), toWide(folder_ / "z")->c_str()))
                << held;
        EXPECT_EQ(files_.openShared(pinned->path() + "a")->size(), 1U);
    }
    EXPECT_TRUE(::MoveFileW(toWide(folder_ / "x")->c_str(), toWide(folder_ / "z")->c_str()));
    EXPECT_EQ(causeOf([&] { access_.pinFolderOf(folder_ / "x/y/a", name); }), Cause::FileNotFound);
    EXPECT_EQ(causeOf([&] { access_.pinFolderOf(folder_ / "z/y/a/b", name); }), Cause::BadPath);
    EXPECT_EQ(causeOf([&] { access_.pinFolderOf("C:\\", name); }), Cause::InvalidFile);
}

}  // namespace
}  // namespace corvalence::test
