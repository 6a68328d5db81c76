#include "platform/windows/status_query.h"

#include <cstddef>

#include "platform/windows/system_error.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

constexpr std::uint64_t joined(std::uint32_t high, std::uint32_t low) noexcept {
    return (std::uint64_t{high} << 32) | low;
}

base::FileTime timeOf(const FILETIME& time) noexcept {
    return {joined(time.dwHighDateTime, time.dwLowDateTime)};
}

base::FileTime timeOf(const LARGE_INTEGER& time) noexcept {
    return {static_cast<std::uint64_t>(time.QuadPart)};
}

/// Only what stands for another name is a link. Compressed, deduplicated and cloud files are reparse points
/// too, and files like any other.
FileKind kindOf(DWORD attributes, DWORD tag) noexcept {
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsReparseTagNameSurrogate(tag))
        return FileKind::Link;
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return FileKind::Folder;
    return (attributes & FILE_ATTRIBUTE_DEVICE) != 0 ? FileKind::Other : FileKind::Regular;
}

/// Wine takes the time of the last change for that of the creation, and such a birth would tell a file from
/// itself.
bool keepsCreationTimes() noexcept {
    static const bool keeps =
        ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr;
    return keeps;
}

std::uint64_t birthOf(base::FileTime created) noexcept {
    return keepsCreationTimes() ? created.ticks : 0;
}

DWORD tagOf(HANDLE handle, DWORD attributes) noexcept {
    FILE_ATTRIBUTE_TAG_INFO info{};
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 ||
        !::GetFileInformationByHandleEx(handle, FileAttributeTagInfo, &info, sizeof(info))) {
        return 0;
    }
    return info.ReparseTag;
}

FolderEntry entryOf(const FILE_ID_BOTH_DIR_INFO& found, std::uint64_t volume) {
    FolderEntry entry;
    entry.name = toUtf8({found.FileName, found.FileNameLength / sizeof(wchar_t)});
    // The system keeps the tag of a reparse point where the length of extended attributes stands otherwise.
    entry.status.kind = kindOf(found.FileAttributes, found.EaSize);
    entry.status.attributes = found.FileAttributes;
    entry.status.size = static_cast<std::uint64_t>(found.EndOfFile.QuadPart);
    entry.status.written = timeOf(found.LastWriteTime);
    entry.status.created = timeOf(found.CreationTime);
    entry.status.identity = {volume, static_cast<std::uint64_t>(found.FileId.QuadPart),
                             birthOf(entry.status.created)};
    return entry;
}

}  // namespace

FileStatus statusOf(HANDLE handle, const std::string& path) {
    BY_HANDLE_FILE_INFORMATION info{};
    if (!::GetFileInformationByHandle(handle, &info)) throwSystemError(path);
    FileStatus status;
    status.kind = kindOf(info.dwFileAttributes, tagOf(handle, info.dwFileAttributes));
    status.attributes = info.dwFileAttributes;
    status.size = joined(info.nFileSizeHigh, info.nFileSizeLow);
    status.written = timeOf(info.ftLastWriteTime);
    status.created = timeOf(info.ftCreationTime);
    status.identity = {info.dwVolumeSerialNumber, joined(info.nFileIndexHigh, info.nFileIndexLow),
                       birthOf(status.created)};
    return status;
}

std::optional<FileStatus> statusByEntry(const std::string& path) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = ::FindFirstFileW(systemPath(path).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return std::nullopt;
    ::FindClose(search);
    FileStatus status;
    status.kind = kindOf(found.dwFileAttributes, found.dwReserved0);
    status.attributes = found.dwFileAttributes;
    status.size = joined(found.nFileSizeHigh, found.nFileSizeLow);
    status.written = timeOf(found.ftLastWriteTime);
    status.created = timeOf(found.ftCreationTime);
    return status;
}

std::vector<FolderEntry> entriesOf(HANDLE folder, const std::string& path) {
    constexpr std::size_t kBuffer = 64 * 1024;
    BY_HANDLE_FILE_INFORMATION info{};
    if (!::GetFileInformationByHandle(folder, &info)) throwSystemError(path);
    if ((info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) throw failureOf(ERROR_DIRECTORY, path);

    std::vector<FolderEntry> entries;
    alignas(FILE_ID_BOTH_DIR_INFO) std::byte buffer[kBuffer];
    for (auto kind = FileIdBothDirectoryRestartInfo;; kind = FileIdBothDirectoryInfo) {
        if (!::GetFileInformationByHandleEx(folder, kind, buffer, sizeof(buffer))) {
            if (::GetLastError() == ERROR_NO_MORE_FILES) return entries;
            throwSystemError(path);
        }
        const std::byte* at = buffer;
        for (;;) {
            const auto& found = *reinterpret_cast<const FILE_ID_BOTH_DIR_INFO*>(at);
            FolderEntry entry = entryOf(found, info.dwVolumeSerialNumber);
            if (entry.name != "." && entry.name != "..") entries.push_back(std::move(entry));
            if (found.NextEntryOffset == 0) break;
            at += found.NextEntryOffset;
        }
    }
}

}  // namespace corvalence::platform::windows_system
