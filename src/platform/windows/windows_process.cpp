#include "platform/windows/windows_process.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "platform/windows/handle.h"
#include "platform/windows/path_style.h"
#include "platform/windows/status_query.h"
#include "platform/windows/system_error.h"
#include "platform/windows/token.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

constexpr const wchar_t* kMutexName = L"Corvalence-5b1e07a4-d2c6-4f19-a0be-7c93e1d4f266";
constexpr std::chrono::milliseconds kLockPoll{50};

// The system calls a handler on a thread of its own, without an argument.
std::atomic<bool> cancelFlag{false};

BOOL WINAPI onControlEvent(DWORD event) {
    cancelFlag.store(true, std::memory_order_relaxed);
    // When the console closes or the session ends, the process ends as soon as this returns: its own thread
    // gets what time the system grants to end in order.
    constexpr DWORD kLongerThanTheSystemWaits = 60'000;
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) ::Sleep(kLongerThanTheSystemWaits);
    return TRUE;
}

/// The mutex is there as long as somebody has it open; who made it holds the installation.
class OpenMutex : public InstanceLock {
  public:
    explicit OpenMutex(Handle mutex) : mutex_(std::move(mutex)) {}

  private:
    Handle mutex_;
};

/// FNV-1a over the bytes of a number.
std::uint64_t mixed(std::uint64_t hash, std::uint64_t number) noexcept {
    for (int shift = 0; shift < 64; shift += 8)
        hash = (hash ^ ((number >> shift) & 0xFF)) * 0x100'0000'01B3U;
    return hash;
}

std::wstring hexText(std::uint64_t number) {
    std::wstring text;
    for (int shift = 60; shift >= 0; shift -= 4)
        text.push_back(L"0123456789abcdef"[(number >> shift) & 0xF]);
    return text;
}

FileIdentity identityOf(const std::string& folder) {
    const Handle handle(::CreateFileW(systemPath(folder).c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!handle.isOpen()) throwSystemError(folder);
    return statusOf(handle.get(), folder).identity;
}

}  // namespace

std::wstring WindowsProcess::mutexName(const std::string& folder) const {
    const FileIdentity identity = identityOf(folder);  // of whatever name the folder is called by
    if (kPaths.equal(kPaths.withSeparator(folder), kPaths.withSeparator(ownFolder_))) return kMutexName;
    constexpr std::uint64_t kStart = 0xCBF2'9CE4'8422'2325U;
    return L"Global\\" + std::wstring(kMutexName) + L"-" +
           hexText(mixed(mixed(mixed(kStart, identity.volume), identity.number), identity.birth));
}

std::unique_ptr<InstanceLock> WindowsProcess::lockInstallation(const std::string& folder,
                                                               std::chrono::milliseconds wait) {
    const std::wstring name = mutexName(folder);
    const auto deadline = std::chrono::steady_clock::now() + wait;
    for (;;) {
        Handle mutex(::CreateMutexW(nullptr, TRUE, name.c_str()));
        const DWORD error = ::GetLastError();
        if (mutex.isOpen() && error != ERROR_ALREADY_EXISTS)
            return std::make_unique<OpenMutex>(std::move(mutex));
        // Another user's mutex is there, but closed to us.
        if (!mutex.isOpen() && error != ERROR_ACCESS_DENIED) throw failureOf(error, folder);
        mutex = Handle();
        const auto now = std::chrono::steady_clock::now();
        if (cancelRequested() || now >= deadline) return nullptr;
        std::this_thread::sleep_until(std::min(deadline, now + kLockPoll));
    }
}

bool WindowsProcess::isAdministrator() {
    SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
    PSID administrators = nullptr;
    if (!::AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0,
                                    0, 0, 0, 0, &administrators)) {
        return false;
    }
    const auto bytes = tokenInformation(openToken(TOKEN_QUERY), TokenGroups);
    const auto& groups = *reinterpret_cast<const TOKEN_GROUPS*>(bytes.data());
    const bool isOne = std::any_of(groups.Groups, groups.Groups + groups.GroupCount, [&](const auto& group) {
        return ::EqualSid(group.Sid, administrators) != FALSE;
    });
    ::FreeSid(administrators);
    return isOne;
}

std::string WindowsProcess::currentFolder() {
    std::wstring folder(::GetCurrentDirectoryW(0, nullptr), L'\0');
    folder.resize(::GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    if (folder.empty()) throwSystemError(".");
    return plainPath(folder);
}

std::string WindowsProcess::programFile() {
    constexpr std::size_t kLongestPath = 32'768;
    std::wstring path(kLongestPath, L'\0');
    path.resize(::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    if (path.empty()) throwSystemError("Corvalence");
    return plainPath(path);
}

void WindowsProcess::catchCancelSignals() {
    ::SetConsoleCtrlHandler(onControlEvent, TRUE);
}

bool WindowsProcess::cancelRequested() const noexcept {
    return cancelFlag.load(std::memory_order_relaxed);
}

}  // namespace corvalence::platform::windows_system
