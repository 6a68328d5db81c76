#include "platform/mail.h"

#include <algorithm>

namespace corvalence::platform {

std::optional<std::string> findAddressFault(std::string_view address) {
    if (address.empty()) return "There is no address.";
    const auto isForeign = [](char c) {
        return c <= ' ' || c > '~' || std::string_view("<>()[],;:\\\"").find(c) != std::string_view::npos;
    };
    const bool isClean = std::none_of(address.begin(), address.end(), isForeign);
    const std::size_t at = address.find('@');
    if (isClean && at != std::string_view::npos && at > 0 && at + 1 < address.size() &&
        address.find('@', at + 1) == std::string_view::npos) {
        return std::nullopt;
    }
    std::string shown(address);
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return "\"" + shown + "\" is not one mail address.";
}

}  // namespace corvalence::platform
