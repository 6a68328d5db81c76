#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/user_interface.h"

namespace corvalence::store {

/// MD5 of a file's raw bytes (RFC 1321) as 32 lower-case hexadecimal characters. Reads in large blocks.
/// Throws base::FileFailure; Cancelled by the progress gives an empty text.
std::string digestFile(platform::FileSystem& files, const std::string& path,
                       platform::Progress* progress = nullptr);

}  // namespace corvalence::store
