#include "platform/windows/backup_streams.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform/windows/handle.h"
#include "platform/windows/system_error.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

/// ":summary:$DATA" without what stands around the name.
std::string plainName(std::wstring_view name) {
    constexpr std::wstring_view kKind = L":$DATA";
    if (name.starts_with(L':')) name.remove_prefix(1);
    return toUtf8(name.substr(0, name.rfind(kKind)));
}

class BackupReader : public StreamReader {
  public:
    BackupReader(Handle file, std::string path) : file_(std::move(file)), path_(std::move(path)) {}
    ~BackupReader() override {
        // Gives back what the system holds for the reading.
        DWORD count = 0;
        if (context_ != nullptr) ::BackupRead(file_.get(), nullptr, 0, &count, TRUE, FALSE, &context_);
    }

    bool next(StreamEntry& entry) override {
        for (;;) {
            skipRest();
            WIN32_STREAM_ID header{};
            if (!readWhole(&header, offsetof(WIN32_STREAM_ID, cStreamName))) return false;
            std::wstring name(header.dwStreamNameSize / sizeof(wchar_t), L'\0');
            if (!readWhole(name.data(), header.dwStreamNameSize)) return false;
            left_ = static_cast<std::uint64_t>(header.Size.QuadPart);
            if (name.empty()) continue;  // the content itself, or a part of what belongs to no stream
            entry = {plainName(name), left_};
            return true;
        }
    }

    std::size_t read(base::ByteSpan buffer) override {
        const std::size_t count = readSome(buffer.data(), std::min<std::uint64_t>(buffer.size(), left_));
        left_ -= count;
        return count;
    }

  private:
    std::size_t readSome(void* to, std::uint64_t size) {
        constexpr std::uint64_t kLargestRead = 1U << 30;
        if (size == 0) return 0;
        DWORD count = 0;
        if (::BackupRead(file_.get(), static_cast<BYTE*>(to),
                         static_cast<DWORD>(std::min(size, kLargestRead)), &count, FALSE, FALSE,
                         &context_) == FALSE) {
            throwSystemError(path_);
        }
        return count;
    }

    /// False at the end.
    bool readWhole(void* to, std::size_t size) {
        for (std::size_t done = 0; done < size;) {
            const std::size_t count = readSome(static_cast<BYTE*>(to) + done, size - done);
            if (count == 0) return false;
            done += count;
        }
        return true;
    }

    void skipRest() {
        if (left_ == 0) return;
        DWORD low = 0;
        DWORD high = 0;
        if (::BackupSeek(file_.get(), static_cast<DWORD>(left_ & 0xFFFF'FFFFU),
                         static_cast<DWORD>(left_ >> 32), &low, &high, &context_) == FALSE) {
            throwSystemError(path_);
        }
        left_ = 0;
    }

    Handle file_;
    std::string path_;
    void* context_ = nullptr;
    std::uint64_t left_ = 0;  // bytes of the present stream that were not read
};

}  // namespace

std::unique_ptr<StreamReader> BackupStreams::open(const std::string& path) {
    // With the flag for backups folders open as well as files.
    Handle file(::CreateFileW(systemPath(path).c_str(), GENERIC_READ,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!file.isOpen()) throwSystemError(path);
    return std::make_unique<BackupReader>(std::move(file), path);
}

bool BackupStreams::isNotSupported(const base::FileFailure& failure) const noexcept {
    return failure.systemError() == ERROR_NOT_SUPPORTED ||
           failure.systemError() == ERROR_CALL_NOT_IMPLEMENTED;
}

}  // namespace corvalence::platform::windows_system
