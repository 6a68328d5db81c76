#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/path_rules.h"
#include "files/file_record.h"
#include "platform/file_types.h"

namespace corvalence::files {

/// "Read only, Hidden.", "Archive.", …; empty for a code that stands for nothing (8, 128, 0 among them).
std::string_view attributeText(AttributeCode code) noexcept;

/// The attributes by their letters, as reports show them: "S+H+R", "C+A"; empty where attributeText() is.
std::string attributeLetters(AttributeCode code);

/// "2048.00" without its decimals: "2048 Bytes.  [2.00 KB].", the bracket strictly above 1024 bytes and not
/// at exactly 1048576 or 1073741824.
std::string formatSizeText(std::uint64_t bytes);

/// The label of remaining bytes of a progress window: as above, without the closing point; "0 bytes." at the
/// end.
std::string remainingText(std::uint64_t bytes);

/// What a search found: "2048 Bytes [2.00 KB]".
std::string foundSizeText(std::uint64_t bytes);

/// The type of a file by its name alone: the registered text of its extension, else the extension and "
/// File", its first four characters as capitals; "No file extension." without one.
std::string describeFileType(std::string_view path, const base::PathRules& paths, platform::FileTypes& types);

/// A path as dialogs show it, in up to three lines: 92 characters, 92 characters, the rest.
std::array<std::string, 3> pathLines(std::string_view path);

/// A path as a progress window shows it: beyond 120 characters its first three, "~..." and its last 113.
std::string shortPath(std::string_view path);

}  // namespace corvalence::files
