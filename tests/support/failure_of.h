#pragma once

#include <optional>
#include <ostream>
#include <utility>

#include "base/file_failure.h"

namespace corvalence::test {

/// The failure that a call throws; empty where it throws none.
template <typename Call>
std::optional<base::FileFailure> failureOf(Call&& call) {
    try {
        std::forward<Call>(call)();
    } catch (const base::FileFailure& failure) {
        return failure;
    }
    return std::nullopt;
}

/// Its cause; Cause::None where it throws none.
template <typename Call>
base::Cause causeOf(Call&& call) {
    const auto failure = failureOf(std::forward<Call>(call));
    return failure ? failure->cause() : base::Cause::None;
}

}  // namespace corvalence::test

namespace corvalence::base {

/// For failed expectations.
inline void PrintTo(Cause cause, std::ostream* out) {
    *out << reasonText(cause);
}

}  // namespace corvalence::base
