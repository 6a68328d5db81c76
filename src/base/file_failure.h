#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace corvalence::base {

/// Why a file operation failed, by the cause numbers that all file messages use.
enum class Cause : int {
    None = 0,
    Generic = 1,
    FileNotFound = 2,
    BadPath = 3,
    TooManyOpenFiles = 4,
    AccessDenied = 5,
    InvalidFile = 6,
    RemoveCurrentDir = 7,
    DirectoryFull = 8,
    BadSeek = 9,
    NoMedia = 10,
    SharingViolation = 11,
    LockViolation = 12,
    DiskFull = 13,
    EndOfFile = 14,
};

/// The fixed text of a cause ("FileNotFound."), as it stands behind "Reason: " in messages.
std::string_view reasonText(Cause cause) noexcept;

/// A file operation that failed: the cause, the operating system's error number (0 where the failure is not
/// the system's) and the path. what() is one line for a log or a terminal.
class FileFailure : public std::runtime_error {
  public:
    FileFailure(Cause cause, int systemError, std::string path);

    Cause cause() const noexcept { return cause_; }
    int systemError() const noexcept { return systemError_; }
    const std::string& path() const noexcept { return path_; }
    std::string_view reason() const noexcept { return reasonText(cause_); }

  protected:
    /// For failures that have a message of their own.
    FileFailure(Cause cause, std::string path, const std::string& message);

  private:
    Cause cause_;
    int systemError_;
    std::string path_;
};

}  // namespace corvalence::base
