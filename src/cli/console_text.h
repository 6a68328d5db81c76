#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/file_time.h"
#include "base/shown_text.h"

namespace corvalence::cli {

using base::LineFeeds;
using base::shown;

/// The last `width` characters of a text that shown() gave; "..." in the place of what was cut off.
std::string lastCharacters(std::string_view text, std::size_t width);

/// A JSON string (RFC 8259) with its quotes. What is no UTF-8 becomes U+FFFD.
std::string jsonString(std::string_view text);

/// Base64 with padding (RFC 4648, section 4).
std::string base64(std::string_view bytes);

/// "2024-02-29T12:30:05Z", with as many decimals of a second as the time has (ISO 8601).
std::string isoTime(base::FileTime time);

}  // namespace corvalence::cli
