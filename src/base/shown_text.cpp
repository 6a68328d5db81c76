#include "base/shown_text.h"

#include "base/utf8.h"

namespace corvalence::base {

namespace {

constexpr std::string_view kHex = "0123456789abcdef";

unsigned char byteAt(std::string_view text, std::size_t at) noexcept {
    return static_cast<unsigned char>(text[at]);
}

bool isControl(std::string_view character) noexcept {
    const unsigned char lead = byteAt(character, 0);
    if (character.size() == 1) return lead < 0x20 || lead == 0x7F;
    return lead == 0xC2 && byteAt(character, 1) < 0xA0;
}

void appendEscaped(std::string& text, std::string_view bytes) {
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
            case '\n':
                text += "\\n";
                break;
            case '\r':
                text += "\\r";
                break;
            case '\t':
                text += "\\t";
                break;
            default:
                text += "\\x";
                text += kHex[byte >> 4];
                text += kHex[byte & 0xF];
        }
    }
}

}  // namespace

std::string shown(std::string_view text, LineFeeds lineFeeds) {
    std::string safe;
    safe.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = base::utf8Length(text);
        const std::string_view character = text.substr(0, length == 0 ? 1 : length);
        const bool stays =
            (character == "\n" && lineFeeds == LineFeeds::Keep) || (length > 0 && !isControl(character));
        if (stays) {
            safe += character;
        } else {
            appendEscaped(safe, character);
        }
        text.remove_prefix(character.size());
    }
    return safe;
}

}  // namespace corvalence::base
