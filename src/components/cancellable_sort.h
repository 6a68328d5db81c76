#pragma once

#include <algorithm>
#include <cstddef>

#include "platform/user_interface.h"

namespace corvalence::components {

/// Sorts what is cheap to move, asking now and then whether the user wants the work to stop. False where that
/// is so; the order is then any.
template <typename Iterator, typename Less>
bool sortUnlessCancelled(Iterator begin, Iterator end, Less less, platform::Progress& progress) {
    struct Cancelled {};
    constexpr std::size_t kInterval = 1 << 16;  // comparisons: a few milliseconds
    std::size_t compared = 0;
    try {
        std::sort(begin, end, [&](const auto& a, const auto& b) {
            if (++compared % kInterval == 0 && progress.cancelled()) throw Cancelled();
            return less(a, b);
        });
        return true;
    } catch (const Cancelled&) {
        return false;
    }
}

}  // namespace corvalence::components
