#pragma once

#include <sys/types.h>

#include <cerrno>
#include <optional>
#include <string>
#include <vector>

namespace corvalence::platform::linux_system {

/// Repeats a call that fills a buffer until the buffer is large enough for what may grow meanwhile. Empty
/// with errno set where the call fails.
template <typename Call>
std::optional<std::string> fillBuffer(Call call) {
    for (;;) {
        const ssize_t needed = call(nullptr, 0);
        if (needed < 0) return std::nullopt;
        std::string buffer(static_cast<std::size_t>(needed), '\0');
        if (needed == 0) return buffer;
        const ssize_t filled = call(buffer.data(), buffer.size());
        if (filled >= 0) {
            buffer.resize(static_cast<std::size_t>(filled));
            return buffer;
        }
        if (errno != ERANGE) return std::nullopt;
    }
}

/// The names of extended attributes as `call` (one of the system's listing calls) lists them; none where the
/// file system keeps no attributes. Empty with errno set where the call fails.
template <typename Call>
std::optional<std::vector<std::string>> attributeNames(Call call) {
    std::vector<std::string> names;
    const auto list = fillBuffer(call);
    if (!list) return errno == ENOTSUP ? std::optional(names) : std::nullopt;
    for (std::size_t at = 0; at < list->size(); at += names.back().size() + 1)
        names.emplace_back(list->c_str() + at);
    return names;
}

}  // namespace corvalence::platform::linux_system
