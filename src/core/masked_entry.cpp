#include "core/masked_entry.h"

#include <algorithm>

#include "base/utf8.h"

namespace corvalence::core {

namespace {

bool hasControlCharacter(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return (c >= 0 && c < ' ') || c == 127; });
}

}  // namespace

MaskedEntry::Typed MaskedEntry::type(std::string_view character) {
    if (character == "*") {
        startAgain();
        return Typed::StartedAgain;
    }
    return paste(character) ? Typed::Taken : Typed::Refused;
}

bool MaskedEntry::paste(std::string_view text) {
    const std::size_t added = base::countCharacters(text);
    if (added == 0 || added > kPasswordLimit - count_) return false;
    if (!base::isUtf8(text) || text.find('*') != std::string_view::npos || hasControlCharacter(text))
        return false;
    text_.append(text);
    count_ += added;
    return true;
}

void MaskedEntry::startAgain() noexcept {
    text_.clear();
    count_ = 0;
}

crypto::SecretText MaskedEntry::take() {
    crypto::SecretText taken = std::move(text_);
    *this = {};
    return taken;
}

}  // namespace corvalence::core
