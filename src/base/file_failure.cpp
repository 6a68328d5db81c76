#include "base/file_failure.h"

#include <array>
#include <cstddef>

namespace corvalence::base {

namespace {

// The oddities (a blank behind "SharingViolation.", a full sentence for missing media) are part of the texts.
constexpr std::array<std::string_view, 15> kReasons = {
    "None.",
    "Generic.",
    "FileNotFound.",
    "BadPath.",
    "TooManyOpenFiles.",
    "AccessDenied.",
    "InvalidFile.",
    "RemoveCurrentDir.",
    "DirectoryFull.",
    "BadSeek.",
    "No media in the disk drive.",
    "SharingViolation. ",
    "LockViolation.",
    "DiskFull.",
    "EndOfFile.",
};

std::string describe(Cause cause, int systemError, const std::string& path) {
    std::string text = path + ": " + std::string(reasonText(cause));
    if (systemError != 0) text += " [system error " + std::to_string(systemError) + "]";
    return text;
}

}  // namespace

std::string_view reasonText(Cause cause) noexcept {
    const auto number = static_cast<std::size_t>(cause);
    return number < kReasons.size() ? kReasons[number] : kReasons[1];
}

FileFailure::FileFailure(Cause cause, int systemError, std::string path)
    : std::runtime_error(describe(cause, systemError, path)),
      cause_(cause),
      systemError_(systemError),
      path_(std::move(path)) {}

FileFailure::FileFailure(Cause cause, std::string path, const std::string& message)
    : std::runtime_error(message), cause_(cause), systemError_(0), path_(std::move(path)) {}

}  // namespace corvalence::base
