#pragma once

#include <string>

#include "platform/file_system.h"

namespace corvalence::crypto {

/// Overwrites an open file four times with 0x00 and 0xFF over its whole size and brings the last pass to the
/// device. The file keeps its name and size.
void overwriteFile(platform::File& file);

/// Overwrites a file as above and removes it. A file of 0 bytes is only removed. SharingViolation where
/// somebody else holds it.
void wipeFile(platform::FileSystem& files, const std::string& path);

}  // namespace corvalence::crypto
