#pragma once

#include <cstdint>
#include <string>

#include "platform/file_system.h"
#include "platform/user_interface.h"

namespace corvalence::platform {

/// Bytes that copying and digesting read at once: large enough for speed, small enough to answer Cancel.
inline constexpr std::size_t kBlockSize = 256 * 1024;

/// Copies `length` bytes from the one file's position to the other's. EndOfFile where `from` ends early.
void copyBytes(File& from, File& to, std::uint64_t length);

/// The same, asking for Cancel before every block: false where the user cancelled; a part is copied then.
bool copyBytes(File& from, File& to, std::uint64_t length, Progress& progress);

/// Removes a file if it is there; a failure to remove it is passed over, for clean-up on a way out that
/// already reports its own failure.
void removeQuietly(FileSystem& files, const std::string& path) noexcept;

}  // namespace corvalence::platform
