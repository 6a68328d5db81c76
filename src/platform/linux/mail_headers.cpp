#include "platform/linux/mail_headers.h"

#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>

#include "base/hex_text.h"
#include "base/utf8.h"
#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

bool isLetterOrDigit(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// Letters and digits as they are, every other byte as `mark` and two hexadecimal digits.
std::string escaped(std::string_view text, char mark) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (isLetterOrDigit(c)) {
            result += c;
        } else {
            result += {mark, kDigits[byte >> 4], kDigits[byte & 15U]};
        }
    }
    return result;
}

bool isPlain(std::string_view text) noexcept {
    const auto isPrintable = [](char c) { return c >= ' ' && c <= '~'; };
    return std::all_of(text.begin(), text.end(), isPrintable) && text.find("=?") == std::string_view::npos;
}

/// Text of a header: as it is where it is short and printable ASCII, else in encoded words on lines of at
/// most 76 characters (RFC 2047), none of which parts a character.
std::string headerText(std::string_view text) {
    constexpr std::string_view kName = "Subject: ";  // the longest of those that stand before such a text
    constexpr std::size_t kLine = 76;
    constexpr std::string_view kBegin = "=?UTF-8?Q?";
    constexpr std::string_view kEnd = "?=";
    constexpr std::size_t kRoom = kLine - kName.size() - kBegin.size() - kEnd.size();
    if (text.size() <= kLine - kName.size() && isPlain(text)) return std::string(text);
    std::string result(kBegin);
    for (std::size_t inWord = 0; !text.empty();) {
        const std::size_t length = std::max<std::size_t>(1, base::utf8Length(text));
        const std::string piece = escaped(text.substr(0, length), '=');
        if (inWord + piece.size() > kRoom) {
            result.append(kEnd).append("\r\n ").append(kBegin);
            inWord = 0;
        }
        result += piece;
        inWord += piece.size();
        text.remove_prefix(length);
    }
    return result.append(kEnd);
}

/// In UTC: "Thu, 29 Feb 2024 12:30:05 +0000".
std::string dateText(base::FileTime time) {
    constexpr std::array kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    using namespace std::chrono;
    const sys_seconds point{seconds{time.unixSeconds()}};
    const sys_days day = floor<days>(point);
    const year_month_day date{day};
    const hh_mm_ss clock{point - day};
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s, %u %s %d %02d:%02d:%02d +0000",
                  kDays[weekday{day}.c_encoding()], static_cast<unsigned>(date.day()),
                  kMonths[static_cast<unsigned>(date.month()) - 1], static_cast<int>(date.year()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data();
}

std::string uniqueText() {
    std::array<std::uint8_t, 16> bytes{};
    // A request of this size is never answered in part.
    while (::getrandom(bytes.data(), bytes.size(), 0) < 0)
        if (errno != EINTR) throwSystemError("/dev/urandom");
    return base::hexText(bytes);
}

}  // namespace

std::vector<std::string> mailHeaders(const MailMessage& message, const std::string& sender,
                                     base::FileTime time) {
    const std::string domain = sender.substr(sender.find('@') + 1);
    return {"Date: " + dateText(time), "From: Corvalence <" + sender + ">", "To: <" + message.recipient + ">",
            "Subject: " + headerText(message.subject), "Message-ID: <" + uniqueText() + "@" + domain + ">",
            // Nobody's notice of absence is to answer a program (RFC 3834).
            "Auto-Submitted: auto-generated"};
}

std::string attachmentHeader(std::string_view name) {
    const bool isQuotable =
        name.size() <= 60 && isPlain(name) && name.find_first_of("\"\\") == std::string_view::npos;
    return "Content-Disposition: attachment; " +
           (isQuotable ? "filename=\"" + std::string(name) + "\"" : "filename*=UTF-8''" + escaped(name, '%'));
}

std::string withMailLineEnds(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    while (!text.empty()) {
        const std::size_t feed = text.find('\n');
        const std::string_view line = text.substr(0, feed);
        result.append(line.ends_with('\r') && feed != std::string_view::npos ? line.substr(0, line.size() - 1)
                                                                             : line);
        if (feed == std::string_view::npos) break;
        result.append("\r\n");
        text.remove_prefix(feed + 1);
    }
    return result;
}

}  // namespace corvalence::platform::linux_system
