#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/file_time.h"
#include "platform/mail.h"

namespace corvalence::platform::linux_system {

/// The headers of a message (RFC 5322) without those of MIME, each folded and without its line end. The
/// sender's address must be sound.
std::vector<std::string> mailHeaders(const MailMessage& message, const std::string& sender,
                                     base::FileTime time);

/// The header that makes a part an attachment of this name (RFC 2183, RFC 2231).
std::string attachmentHeader(std::string_view name);

/// The text with every line ended by CR LF.
std::string withMailLineEnds(std::string_view text);

}  // namespace corvalence::platform::linux_system
