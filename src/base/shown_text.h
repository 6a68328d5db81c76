#pragma once

#include <string>
#include <string_view>

namespace corvalence::base {

enum class LineFeeds { Escape, Keep };

/// A text that is safe to show, on a terminal or in a window: control bytes, control characters U+0080 to
/// U+009F and bytes that are no UTF-8 are written as "\n", "\t", "\r" or "\x1b"; everything else stays.
std::string shown(std::string_view text, LineFeeds lineFeeds = LineFeeds::Escape);

}  // namespace corvalence::base
