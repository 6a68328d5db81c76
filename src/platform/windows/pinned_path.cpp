#include "platform/windows/pinned_path.h"

#include <aclapi.h>

#include <algorithm>
#include <array>

#include "platform/windows/path_style.h"
#include "platform/windows/status_query.h"
#include "platform/windows/system_error.h"
#include "platform/windows/token.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

/// As many links as the system itself follows on one path.
constexpr int kLinkLimit = 63;

class WindowsPinnedFolder : public PinnedFolder {
  public:
    WindowsPinnedFolder(std::vector<Handle> held, std::string path)
        : held_(std::move(held)), path_(std::move(path)) {}

    // What is held keeps its name, so the path goes on leading there.
    const std::string& path() const noexcept override { return path_; }
    const std::string& resolvedPath() const noexcept override { return path_; }

  private:
    std::vector<Handle> held_;
    std::string path_;
};

std::string finalPath(const Handle& handle, const std::string& path) {
    std::wstring text(::GetFinalPathNameByHandleW(handle.get(), nullptr, 0, 0), L'\0');
    const DWORD length =
        ::GetFinalPathNameByHandleW(handle.get(), text.data(), static_cast<DWORD>(text.size()), 0);
    if (length == 0 || length > text.size()) throwSystemError(path);
    text.resize(length);
    return plainPath(text);
}

/// Opened for passing through, and not shared for deleting: a handle that only asked for attributes would
/// hold nothing.
Handle openHeld(const std::string& path, DWORD flags) {
    return Handle(::CreateFileW(systemPath(path).c_str(), FILE_TRAVERSE | FILE_READ_ATTRIBUTES | READ_CONTROL,
                                FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
}

}  // namespace

void PathWalk::refuseStranger(const Handle& link) const {
    PSID owner = nullptr;
    LocalMemory<PSECURITY_DESCRIPTOR> memory;
    const DWORD error = ::GetSecurityInfo(link.get(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner,
                                          nullptr, nullptr, nullptr, memory.out());
    if (error != ERROR_SUCCESS) throw failureOf(error, file_);
    const auto user = tokenInformation(openToken(TOKEN_QUERY), TokenUser);
    if (::EqualSid(owner, reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid)) return;
    constexpr std::array kTrusted = {WinBuiltinAdministratorsSid, WinLocalSystemSid};
    if (std::any_of(kTrusted.begin(), kTrusted.end(),
                    [&](WELL_KNOWN_SID_TYPE type) { return ::IsWellKnownSid(owner, type) != FALSE; })) {
        return;
    }
    // The service that owns the files of the system itself.
    std::array<std::byte, SECURITY_MAX_SID_SIZE> installer{};
    std::array<wchar_t, 64> domain{};
    auto size = static_cast<DWORD>(installer.size());
    auto domainSize = static_cast<DWORD>(domain.size());
    SID_NAME_USE use{};
    if (::LookupAccountNameW(nullptr, L"NT SERVICE\\TrustedInstaller", installer.data(), &size, domain.data(),
                             &domainSize, &use) &&
        ::EqualSid(owner, installer.data())) {
        return;
    }
    throw failureOf(ERROR_ACCESS_DENIED, file_);
}

std::string PathWalk::hold(const std::string& path, bool isLast) {
    Handle found = openHeld(path, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!found.isOpen()) {
        // The file itself may be missing, or closed to us; it need not be held.
        if (isLast) return {};
        throwSystemError(file_);
    }
    const FileStatus status = statusOf(found.get(), file_);
    if (status.kind == FileKind::Link) {
        refuseStranger(found);
        const Handle target = openHeld(path, 0);
        if (!target.isOpen()) throwSystemError(file_);
        held_.push_back(std::move(found));
        return finalPath(target, file_);
    }
    if (isLast) return {};
    if (status.kind != FileKind::Folder) throw failureOf(ERROR_DIRECTORY, file_);
    held_.push_back(std::move(found));
    return {};
}

std::unique_ptr<PinnedFolder> PathWalk::finish(std::string& name) {
    std::string whole = plainPath(systemPath(file_));
    for (int links = 0; links <= kLinkLimit; ++links) {
        // Behind the root, "C:\" or "\\server\share\", which no name leads to.
        const bool isShare = whole.front() == '\\';
        std::size_t at = isShare ? whole.find('\\', whole.find('\\', 2) + 1) : 2;
        std::string target;
        while (target.empty()) {
            if (at == std::string::npos || at + 1 >= whole.size()) {
                throw base::FileFailure(base::Cause::InvalidFile, 0, file_);
            }
            const std::size_t begin = at + 1;
            at = whole.find('\\', begin);
            const bool isLast = at == std::string::npos;
            target = hold(whole.substr(0, at), isLast);
            if (target.empty() && isLast) {
                name = whole.substr(begin);
                return std::make_unique<WindowsPinnedFolder>(std::move(held_), whole.substr(0, begin));
            }
        }
        whole = at == std::string::npos ? target : target + whole.substr(at);
    }
    throw failureOf(ERROR_CANT_RESOLVE_FILENAME, file_);
}

}  // namespace corvalence::platform::windows_system
