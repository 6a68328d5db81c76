#include "platform/windows/windows_file.h"

#include <algorithm>
#include <limits>

#include "platform/windows/status_query.h"
#include "platform/windows/system_error.h"

namespace corvalence::platform::windows_system {

namespace {

/// Most bytes that one call is asked to move.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 28;

/// The system counts offsets with a sign.
LARGE_INTEGER offsetOf(std::uint64_t position, base::Cause cause, const std::string& path) {
    if (position > static_cast<std::uint64_t>(std::numeric_limits<LONGLONG>::max())) {
        throw base::FileFailure(cause, ERROR_INVALID_PARAMETER, path);
    }
    LARGE_INTEGER offset{};
    offset.QuadPart = static_cast<LONGLONG>(position);
    return offset;
}

}  // namespace

std::size_t WindowsFile::read(base::ByteSpan buffer) {
    std::size_t done = 0;
    while (done < buffer.size()) {
        const auto wanted = static_cast<DWORD>(std::min(buffer.size() - done, kMostAtOnce));
        DWORD count = 0;
        if (!::ReadFile(handle(), buffer.data() + done, wanted, &count, nullptr)) {
            if (::GetLastError() == ERROR_HANDLE_EOF) break;
            throwSystemError(path_);
        }
        done += count;
        if (count < wanted) break;
    }
    return done;
}

void WindowsFile::write(base::ByteView bytes) {
    while (!bytes.empty()) {
        const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
        DWORD count = 0;
        if (!::WriteFile(handle(), bytes.data(), wanted, &count, nullptr)) throwSystemError(path_);
        // A volume that filled up in the middle may say so by the count alone.
        if (count == 0) throw failureOf(ERROR_DISK_FULL, path_);
        bytes = bytes.subspan(count);
    }
}

void WindowsFile::seek(std::uint64_t position) {
    if (!::SetFilePointerEx(handle(), offsetOf(position, base::Cause::BadSeek, path_), nullptr, FILE_BEGIN)) {
        throw base::FileFailure(base::Cause::BadSeek, static_cast<int>(::GetLastError()), path_);
    }
}

std::uint64_t WindowsFile::size() {
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(handle(), &size)) throwSystemError(path_);
    return static_cast<std::uint64_t>(size.QuadPart);
}

void WindowsFile::resize(std::uint64_t size) {
    FILE_END_OF_FILE_INFO info{offsetOf(size, base::Cause::DiskFull, path_)};
    if (!::SetFileInformationByHandle(handle(), FileEndOfFileInfo, &info, sizeof(info)))
        throwSystemError(path_);
}

void WindowsFile::flush() {
    if (!::FlushFileBuffers(handle())) throwSystemError(path_);
}

FileStatus WindowsFile::status() {
    return statusOf(handle(), path_);
}

}  // namespace corvalence::platform::windows_system
