#include "platform/windows/wide.h"

#include <algorithm>
#include <cstdint>

#include "base/file_failure.h"
#include "base/path_rules.h"
#include "platform/windows/path_style.h"

namespace corvalence::platform::windows_system {

namespace {

constexpr std::wstring_view kPrefix = L"\\\\?\\";
constexpr std::wstring_view kSharePrefix = L"\\\\?\\UNC\\";

constexpr bool isHighHalf(std::uint32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowHalf(std::uint32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void appendUtf8(std::string& text, std::uint32_t code) {
    const auto trailing = [&](int shift) {
        text.push_back(static_cast<char>(0x80 | ((code >> shift) & 0x3F)));
    };
    if (code < 0x80) {
        text.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        text.push_back(static_cast<char>(0xC0 | (code >> 6)));
        trailing(0);
    } else if (code < 0x10000) {
        text.push_back(static_cast<char>(0xE0 | (code >> 12)));
        trailing(6);
        trailing(0);
    } else {
        text.push_back(static_cast<char>(0xF0 | (code >> 18)));
        trailing(12);
        trailing(6);
        trailing(0);
    }
}

/// The character at `at`, which moves behind it. Empty where the bytes are none in its shortest form.
std::optional<std::uint32_t> nextCharacter(std::string_view text, std::size_t& at) {
    constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<std::uint8_t>(text[at]);
    if (first < 0x80) return text[at++];
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() - at < length) return std::nullopt;
    std::uint32_t code = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<std::uint8_t>(text[at + i]);
        if ((byte & 0xC0) != 0x80) return std::nullopt;
        code = (code << 6) | (byte & 0x3FU);
    }
    if (code < kSmallest[length] || code > 0x10FFFF) return std::nullopt;
    at += length;
    return code;
}

}  // namespace

std::optional<std::wstring> toWide(std::string_view text) {
    std::wstring wide;
    wide.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto code = nextCharacter(text, at);
        if (!code) return std::nullopt;
        if (*code < 0x10000) {
            wide.push_back(static_cast<wchar_t>(*code));
        } else {
            wide.push_back(static_cast<wchar_t>(0xD800 + ((*code - 0x10000) >> 10)));
            wide.push_back(static_cast<wchar_t>(0xDC00 + (*code & 0x3FF)));
        }
    }
    return wide;
}

std::string toUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        std::uint32_t code = text[at];
        if (isHighHalf(code) && at + 1 < text.size() && isLowHalf(text[at + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10) + (text[++at] - 0xDC00U);
        }
        appendUtf8(bytes, code);
    }
    return bytes;
}

bool isSystemPath(const std::string& path) noexcept {
    constexpr std::size_t kLongestName = 255;
    const bool isShare = path.size() > 2 && kPaths.isSeparator(path[0]) && kPaths.isSeparator(path[1]);
    const bool hasDrive = path.size() > 2 && path[1] == ':' && kPaths.isSeparator(path[2]);
    if ((!isShare && !hasDrive) || path.find('\0') != std::string::npos) return false;
    const auto wide = toWide(path);
    if (!wide || wide->starts_with(kPrefix)) return wide.has_value();
    // A colon in a name would lead to one of the streams of a file.
    if (wide->find(L':', 2) != std::wstring::npos) return false;
    std::size_t length = 0;
    return std::all_of(wide->begin(), wide->end(), [&](wchar_t unit) {
        length = unit == L'\\' || unit == L'/' ? 0 : length + 1;
        return length <= kLongestName;
    });
}

std::wstring systemPath(const std::string& path) {
    if (path.empty()) throw base::FileFailure(base::Cause::FileNotFound, 0, path);
    if (!isSystemPath(path)) throw base::FileFailure(base::Cause::BadPath, 0, path);
    const std::wstring wide = toWide(path).value();
    if (wide.starts_with(kPrefix)) return wide;
    const std::wstring clean = toWide(kPaths.absolute(path, {})).value();
    const bool isShare = clean.front() == L'\\';
    return isShare ? std::wstring(kSharePrefix) + clean.substr(2) : std::wstring(kPrefix) + clean;
}

std::string plainPath(std::wstring_view path) {
    if (path.starts_with(kSharePrefix)) return "\\\\" + toUtf8(path.substr(kSharePrefix.size()));
    if (path.starts_with(kPrefix)) path.remove_prefix(kPrefix.size());
    return toUtf8(path);
}

}  // namespace corvalence::platform::windows_system
