#include "cli/console_text.h"

#include <array>
#include <chrono>
#include <cstdint>

#include "base/utf8.h"

namespace corvalence::cli {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
constexpr std::string_view kHex = "0123456789abcdef";

unsigned char byteAt(std::string_view text, std::size_t at) noexcept {
    return static_cast<unsigned char>(text[at]);
}

void appendJsonCharacter(std::string& text, std::string_view character) {
    const char c = character.front();
    if (character.size() > 1 || (static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\')) {
        text += character;
    } else if (c == '"' || c == '\\') {
        text += '\\';
        text += c;
    } else {
        text += "\\u00";
        text += kHex[byteAt(character, 0) >> 4];
        text += kHex[byteAt(character, 0) & 0xF];
    }
}

std::string padded(std::uint64_t value, std::size_t width) {
    std::string text = std::to_string(value);
    return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

}  // namespace

std::string lastCharacters(std::string_view text, std::size_t width) {
    constexpr std::string_view kCut = "...";
    const std::size_t count = base::countCharacters(text);
    if (count <= width) return std::string(text);
    if (width <= kCut.size()) return std::string(kCut.substr(0, width));
    for (std::size_t left = count - (width - kCut.size()); left > 0; --left)
        text.remove_prefix(base::utf8Length(text));
    return std::string(kCut).append(text);
}

std::string jsonString(std::string_view text) {
    std::string json = "\"";
    json.reserve(text.size() + 2);
    while (!text.empty()) {
        const std::size_t length = base::utf8Length(text);
        if (length == 0) {
            json += kReplacement;
        } else {
            appendJsonCharacter(json, text.substr(0, length));
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return json + '"';
}

std::string base64(std::string_view bytes) {
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(3, bytes.size()))) {
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i)
            group = group << 8 | (i < bytes.size() ? byteAt(bytes, i) : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= bytes.size() ? kLetters[group >> (18 - 6 * i) & 0x3F] : '=';
    }
    return text;
}

std::string isoTime(base::FileTime time) {
    using namespace std::chrono;
    const sys_seconds moment{seconds(time.unixSeconds())};
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(moment - day);
    const auto number = [](auto value, std::size_t width) {
        return padded(static_cast<std::uint64_t>(value), width);
    };
    std::string text = number(static_cast<int>(date.year()), 4) + "-" +
                       number(static_cast<unsigned>(date.month()), 2) + "-" +
                       number(static_cast<unsigned>(date.day()), 2) + "T" + number(clock.hours().count(), 2) +
                       ":" + number(clock.minutes().count(), 2) + ":" + number(clock.seconds().count(), 2);
    if (const std::uint64_t rest = time.ticks % base::FileTime::kTicksPerSecond) {
        const std::string decimals = padded(rest, 7);
        text += "." + decimals.substr(0, decimals.find_last_not_of('0') + 1);
    }
    return text + "Z";
}

}  // namespace corvalence::cli
