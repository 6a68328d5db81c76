#include "base/utf8.h"

#include <array>

namespace corvalence::base {

namespace {

struct LeadRow {
    unsigned char first;
    unsigned char last;
    unsigned char secondFirst;  // range of the second byte, which rules out overlong forms and surrogates
    unsigned char secondLast;
    std::size_t length;
};

constexpr std::array<LeadRow, 9> kLeads = {{
    {0x00, 0x7F, 0x00, 0x00, 1},
    {0xC2, 0xDF, 0x80, 0xBF, 2},
    {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3},
    {0xED, 0xED, 0x80, 0x9F, 3},
    {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4},
    {0xF1, 0xF3, 0x80, 0xBF, 4},
    {0xF4, 0xF4, 0x80, 0x8F, 4},
}};

unsigned char byteAt(std::string_view text, std::size_t at) noexcept {
    return static_cast<unsigned char>(text[at]);
}

}  // namespace

std::size_t utf8Length(std::string_view text) noexcept {
    if (text.empty()) return 0;
    const unsigned char lead = byteAt(text, 0);
    for (const LeadRow& row : kLeads) {
        if (lead < row.first || lead > row.last) continue;
        if (row.length > text.size()) return 0;
        for (std::size_t i = 1; i < row.length; ++i) {
            const unsigned char low = i == 1 ? row.secondFirst : 0x80;
            const unsigned char high = i == 1 ? row.secondLast : 0xBF;
            if (byteAt(text, i) < low || byteAt(text, i) > high) return 0;
        }
        return row.length;
    }
    return 0;
}

bool isUtf8(std::string_view text) noexcept {
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::size_t countCharacters(std::string_view text) noexcept {
    std::size_t count = 0;
    for (std::string_view rest = text; !rest.empty(); ++count) {
        const std::size_t length = utf8Length(rest);
        if (length == 0) return text.size();
        rest.remove_prefix(length);
    }
    return count;
}

}  // namespace corvalence::base
