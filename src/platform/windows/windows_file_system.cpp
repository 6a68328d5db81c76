#include "platform/windows/windows_file_system.h"

#include <algorithm>
#include <cstring>

#include "platform/windows/handle.h"
#include "platform/windows/path_style.h"
#include "platform/windows/status_query.h"
#include "platform/windows/system_error.h"
#include "platform/windows/wide.h"
#include "platform/windows/windows_file.h"

namespace corvalence::platform::windows_system {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
/// Readers and writers stay out; renaming and removing is the program's own way of replacing a file it holds.
constexpr DWORD kShareNothing = FILE_SHARE_DELETE;

// Later than the headers that this is built with: numbers and flags of FILE_INFO_BY_HANDLE_CLASS.
constexpr auto kDispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr auto kRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr DWORD kRenameReplace = 0x01;
constexpr DWORD kRenamePosix = 0x02;
constexpr DWORD kRenameIgnoreReadOnly = 0x40;
constexpr DWORD kRemove = 0x01;
constexpr DWORD kRemovePosix = 0x02;
constexpr DWORD kRemoveIgnoreReadOnly = 0x10;

/// A virus scanner or an indexer holds new files for a moment; only who stays is told as a sharing violation.
template <typename Call>
auto patiently(Call call) {
    constexpr int kTries = 10;
    constexpr DWORD kPause = 20;
    for (int number = 1;; ++number) {
        auto result = call();
        if (result || ::GetLastError() != ERROR_SHARING_VIOLATION || number == kTries) return result;
        ::Sleep(kPause);
    }
}

/// Whether the file system, or an older system, does not know what it was asked for.
bool isUnknownCall(DWORD error) noexcept {
    return error == ERROR_INVALID_PARAMETER || error == ERROR_INVALID_FUNCTION ||
           error == ERROR_NOT_SUPPORTED || error == ERROR_CALL_NOT_IMPLEMENTED ||
           error == ERROR_INVALID_LEVEL;
}

Handle open(const std::wstring& path, DWORD access, DWORD share, DWORD disposition, DWORD flags,
            SECURITY_ATTRIBUTES* rights = nullptr) {
    return Handle(::CreateFileW(path.c_str(), access, share, rights, disposition, flags, nullptr));
}

/// Turns the read-only attribute off for as long as this lives.
class Writable {
  public:
    explicit Writable(const std::wstring& path) : path_(path), before_(::GetFileAttributesW(path.c_str())) {
        changed_ = before_ != INVALID_FILE_ATTRIBUTES && (before_ & FILE_ATTRIBUTE_READONLY) != 0 &&
                   (before_ & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
                   ::SetFileAttributesW(path.c_str(), without(before_)) != FALSE;
    }
    ~Writable() {
        const DWORD error = ::GetLastError();
        if (changed_) ::SetFileAttributesW(path_.c_str(), before_);
        ::SetLastError(error);
    }
    Writable(const Writable&) = delete;
    Writable& operator=(const Writable&) = delete;

    bool changed() const noexcept { return changed_; }
    /// What stood there is gone; nothing is turned back.
    void forget() noexcept { changed_ = false; }

  private:
    static DWORD without(DWORD attributes) noexcept {
        const DWORD rest = attributes & ~DWORD{FILE_ATTRIBUTE_READONLY};
        return rest == 0 ? FILE_ATTRIBUTE_NORMAL : rest;
    }

    std::wstring path_;
    DWORD before_;
    bool changed_;
};

/// Throws InvalidFile unless a regular file is open: not a folder, a pipe or a device.
void requireRegular(const Handle& handle, const std::string& path) {
    if (::GetFileType(handle.get()) != FILE_TYPE_DISK ||
        statusOf(handle.get(), path).kind != FileKind::Regular) {
        throw base::FileFailure(base::Cause::InvalidFile, 0, path);
    }
}

/// The failure of an open. A folder that cannot be opened for writing is told as what it is.
base::FileFailure openFailure(const std::wstring& wide, const std::string& path) {
    const DWORD error = ::GetLastError();
    const DWORD attributes = ::GetFileAttributesW(wide.c_str());
    if (error == ERROR_ACCESS_DENIED && attributes != INVALID_FILE_ATTRIBUTES &&
        (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return {base::Cause::InvalidFile, ERROR_ACCESS_DENIED, path};
    }
    return failureOf(error, path);
}

/// Brings the entries of a folder to the device as far as the system lets a program do so. The changes
/// themselves are written through; a folder or a volume that cannot be flushed takes nothing from that.
void flushFolder(const std::string& file) {
    std::string_view folder = kPaths.folder(file);
    const Handle handle = open(systemPath(std::string(folder)), GENERIC_WRITE, kShareAll, OPEN_EXISTING,
                               FILE_FLAG_BACKUP_SEMANTICS);
    if (handle.isOpen()) ::FlushFileBuffers(handle.get());
}

/// The rename that replaces a target which others have open, as long as they share it for deleting.
bool renameAtOnce(const std::wstring& from, const std::wstring& to) {
    const Handle handle =
        open(from, DELETE | SYNCHRONIZE, kShareAll, OPEN_EXISTING,
             FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_WRITE_THROUGH);
    if (!handle.isOpen()) return false;
    const std::size_t nameSize = to.size() * sizeof(wchar_t);
    std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + nameSize);
    auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
    const DWORD flags = kRenameReplace | kRenamePosix | kRenameIgnoreReadOnly;
    std::memcpy(buffer.data(), &flags, sizeof(flags));  // where the older structure has its one flag
    info->FileNameLength = static_cast<DWORD>(nameSize);
    std::memcpy(info->FileName, to.c_str(), nameSize);
    return ::SetFileInformationByHandle(handle.get(), kRenameInfoEx, info,
                                        static_cast<DWORD>(buffer.size())) != FALSE;
}

bool replaceByMove(const std::wstring& from, const std::wstring& to) {
    constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    if (::MoveFileExW(from.c_str(), to.c_str(), kFlags)) return true;
    if (::GetLastError() != ERROR_ACCESS_DENIED) return false;
    Writable target(to);
    if (!target.changed()) {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    if (!::MoveFileExW(from.c_str(), to.c_str(), kFlags)) return false;
    target.forget();
    return true;
}

bool removeOpen(const Handle& handle) {
    DWORD flags = kRemove | kRemovePosix | kRemoveIgnoreReadOnly;
    if (::SetFileInformationByHandle(handle.get(), kDispositionInfoEx, &flags, sizeof(flags))) return true;
    if (!isUnknownCall(::GetLastError())) return false;
    FILE_DISPOSITION_INFO info{TRUE};
    return ::SetFileInformationByHandle(handle.get(), FileDispositionInfo, &info, sizeof(info)) != FALSE;
}

bool removePath(const std::wstring& path) {
    const Handle handle = open(path, DELETE, kShareAll, OPEN_EXISTING,
                               FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT);
    if (!handle.isOpen()) return false;
    if (removeOpen(handle)) return true;
    if (::GetLastError() != ERROR_ACCESS_DENIED) return false;
    Writable file(path);
    if (!file.changed()) {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    if (!removeOpen(handle)) return false;
    file.forget();
    return true;
}

}  // namespace

std::unique_ptr<File> WindowsFileSystem::openShared(const std::string& path) {
    const std::wstring wide = systemPath(path);
    // With the backup privilege this opens what the access list denies even to administrators.
    Handle handle = open(wide, GENERIC_READ, kShareAll, OPEN_EXISTING,
                         FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_SEQUENTIAL_SCAN);
    if (!handle.isOpen()) throw openFailure(wide, path);
    requireRegular(handle, path);
    return std::make_unique<WindowsFile>(std::move(handle), path);
}

std::unique_ptr<File> WindowsFileSystem::openExclusive(const std::string& path) {
    const std::wstring wide = systemPath(path);
    const auto attempt = [&] {
        Handle handle;
        patiently([&] {
            handle = open(wide, GENERIC_READ | GENERIC_WRITE, kShareNothing, OPEN_EXISTING, 0);
            return handle.isOpen();
        });
        return handle;
    };
    Handle handle = attempt();
    if (!handle.isOpen() && ::GetLastError() == ERROR_ACCESS_DENIED) {
        const Writable file(wide);
        if (file.changed()) {
            handle = attempt();
        } else {
            ::SetLastError(ERROR_ACCESS_DENIED);
        }
    }
    if (!handle.isOpen()) throw openFailure(wide, path);
    requireRegular(handle, path);
    return std::make_unique<WindowsFile>(std::move(handle), path);
}

std::unique_ptr<File> WindowsFileSystem::createNew(const std::string& path) {
    SECURITY_ATTRIBUTES rights = rights_.forFile();
    // The rights over rights are for those that copyProtection() gives it.
    constexpr DWORD kAccess = GENERIC_READ | GENERIC_WRITE | READ_CONTROL | WRITE_DAC | WRITE_OWNER;
    Handle handle = open(systemPath(path), kAccess, kShareNothing, CREATE_NEW,
                         FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, &rights);
    if (!handle.isOpen()) throwSystemError(path);
    return std::make_unique<WindowsFile>(std::move(handle), path);
}

std::optional<FileStatus> WindowsFileSystem::status(const std::string& path, Follow follow) {
    // At what is no path, or no name, of this system nothing stands.
    if (!isSystemPath(path)) return std::nullopt;
    const std::wstring wide = systemPath(path);
    const DWORD flags =
        FILE_FLAG_BACKUP_SEMANTICS | (follow == Follow::No ? FILE_FLAG_OPEN_REPARSE_POINT : DWORD{0});
    const Handle handle = open(wide, FILE_READ_ATTRIBUTES, kShareAll, OPEN_EXISTING, flags);
    if (handle.isOpen()) return statusOf(handle.get(), path);
    const DWORD error = ::GetLastError();
    if (isMissing(error) || error == ERROR_INVALID_NAME || error == ERROR_BAD_PATHNAME) return std::nullopt;
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED) {
        if (auto status = statusByEntry(path)) return status;
    }
    throw failureOf(error, path);
}

std::vector<FolderEntry> WindowsFileSystem::list(const std::string& folder, Detail) {
    // The system gives names and status in one.
    const Handle handle = open(systemPath(folder), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES, kShareAll,
                               OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    if (!handle.isOpen()) throwSystemError(folder);
    std::vector<FolderEntry> entries = entriesOf(handle.get(), folder);
    std::sort(entries.begin(), entries.end(),
              [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
    return entries;
}

void WindowsFileSystem::rename(const std::string& from, const std::string& to) {
    const std::wstring source = systemPath(from);
    const std::wstring target = systemPath(to);
    const bool renamed = patiently([&] {
        return renameAtOnce(source, target) ||
               (isUnknownCall(::GetLastError()) && replaceByMove(source, target));
    });
    if (!renamed) throwSystemError(from);
    flushFolder(to);
}

bool WindowsFileSystem::renameNew(const std::string& from, const std::string& to) {
    const std::wstring source = systemPath(from);
    const std::wstring target = systemPath(to);
    const bool renamed = patiently(
        [&] { return ::MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != FALSE; });
    if (!renamed) {
        if (isNameTaken(failureOf(::GetLastError(), to))) return false;
        throwSystemError(from);
    }
    flushFolder(to);
    return true;
}

bool WindowsFileSystem::linkNew(const std::string& from, const std::string& to) {
    if (!::CreateHardLinkW(systemPath(to).c_str(), systemPath(from).c_str(), nullptr)) {
        const base::FileFailure failure = failureOf(::GetLastError(), from);
        if (isNameTaken(failure)) return false;
        throw failure;
    }
    flushFolder(to);
    return true;
}

void WindowsFileSystem::remove(const std::string& path) {
    const std::wstring wide = systemPath(path);
    const auto found = status(path, Follow::No);
    if (!found) throw failureOf(ERROR_FILE_NOT_FOUND, path);
    if (found->kind == FileKind::Folder) throw base::FileFailure(base::Cause::InvalidFile, 0, path);
    if (!patiently([&] { return removePath(wide); })) throwSystemError(path);
}

void WindowsFileSystem::createFolder(const std::string& path) {
    const std::string folder = plainPath(systemPath(path));
    const std::wstring wide = systemPath(folder);
    SECURITY_ATTRIBUTES rights = rights_.forFolder();
    bool made = ::CreateDirectoryW(wide.c_str(), &rights) != FALSE;
    if (!made && ::GetLastError() == ERROR_PATH_NOT_FOUND) {
        std::string above(kPaths.folder(folder));
        if (above.size() < folder.size()) {
            createFolder(above);
            made = ::CreateDirectoryW(wide.c_str(), &rights) != FALSE;
        }
    }
    if (made) {
        flushFolder(folder);
        return;
    }
    const DWORD error = ::GetLastError();
    const DWORD attributes = ::GetFileAttributesW(wide.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) throw failureOf(error, path);
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) throw failureOf(ERROR_DIRECTORY, path);
}

std::size_t WindowsFileSystem::nameLimit() const noexcept {
    return 255;
}

bool WindowsFileSystem::isNameTaken(const base::FileFailure& failure) const noexcept {
    return failure.systemError() == ERROR_FILE_EXISTS || failure.systemError() == ERROR_ALREADY_EXISTS;
}

bool WindowsFileSystem::isOtherVolume(const base::FileFailure& failure) const noexcept {
    return failure.systemError() == ERROR_NOT_SAME_DEVICE;
}

}  // namespace corvalence::platform::windows_system
