#include "machine.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <cstdlib>
#include <filesystem>

#include "platform/windows/handle.h"
#include "platform/windows/token.h"
#include "platform/windows/wide.h"

namespace corvalence::test {

namespace {

using namespace platform::windows_system;

std::wstring wide(const std::string& path) {
    return toWide(path).value();
}

/// The drive that the runner of the tests keeps in memory.
std::string testFolder() {
    const char* const folder = std::getenv("CORVALENCE_TEST_FOLDER");
    return folder != nullptr ? folder : std::filesystem::temp_directory_path().string();
}

}  // namespace

bool makeLink(const std::string& target, const std::string& link) {
    // Wine says that it made one and makes none.
    return ::CreateSymbolicLinkW(wide(link).c_str(), wide(target).c_str(), 0) != 0 &&
           ::GetFileAttributesW(wide(link).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string streamName(const std::string& name) {
    return name;
}

bool addStream(const std::string& path, const std::string& name) {
    // Wine would make a file of that name.
    if (isEmulated()) return false;
    const Handle stream(::CreateFileW(wide(path + ":" + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return stream.isOpen();
}

bool removeStream(const std::string& path, const std::string& name) {
    return !isEmulated() && ::DeleteFileW(wide(path + ":" + name).c_str()) != 0;
}

bool makePipe(const std::string&) {
    return false;
}

void setReadOnly(const std::string& path, bool readOnly) {
    const DWORD before = ::GetFileAttributesW(wide(path).c_str());
    const DWORD bit = FILE_ATTRIBUTE_READONLY;
    ::SetFileAttributesW(wide(path).c_str(), readOnly ? before | bit : before & ~bit);
}

bool isOwnersAlone(const std::string& path) {
    PACL list = nullptr;
    LocalMemory<PSECURITY_DESCRIPTOR> memory;
    if (::GetNamedSecurityInfoW(wide(path).c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                nullptr, &list, nullptr, memory.out()) != ERROR_SUCCESS ||
        list == nullptr) {
        return false;
    }
    for (DWORD number = 0; number < list->AceCount; ++number) {
        void* entry = nullptr;
        LocalMemory<LPWSTR> text;
        if (!::GetAce(list, number, &entry)) return false;
        auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        if (!::ConvertSidToStringSidW(&allowed->SidStart, text.out())) return false;
        const std::wstring who = text.get();
        const bool isKnown = who == userSidText() || who == L"S-1-5-32-544" || who == L"S-1-5-18";
        if (allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE && allowed->Mask != 0 && !isKnown)
            return false;
    }
    return true;
}

bool canBeNamed(const std::string& name) {
    const auto text = toWide(name);
    if (!text || text->find_first_of(L"<>:\"/\\|?*") != std::wstring::npos) return false;
    for (const wchar_t unit : *text) {
        if (unit < L' ') return false;
    }
    return true;
}

std::string deviceFile() {
    return {};
}

bool isEmulated() {
    return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

std::string usualFolder() {
    return testFolder();
}

std::string otherVolume() {
    return std::filesystem::temp_directory_path().string();
}

std::string shortFolder() {
    return testFolder();
}

std::string quickFolder() {
    return testFolder();
}

}  // namespace corvalence::test
