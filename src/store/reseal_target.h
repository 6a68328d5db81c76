#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "crypto/sealed_stream.h"

namespace corvalence::store {

/// Bytes of a file that belong together.
struct Stretch {
    std::uint64_t length = 0;
    /// How the plain text of a sealed stretch ends; nothing for bytes that are stored as they are.
    std::optional<crypto::EndRule> sealed;
};

/// A file of the installation that is sealed with the session's key: what its owner hands to a change of the
/// password.
struct ResealTarget {
    std::string path;
    crypto::ChainValue chain{};
    /// What the file consists of from its start, in order; what lies behind is dropped. Not given: one text,
    /// read by rule A. Asked when the file's turn comes. Throws base::FileFailure.
    std::function<std::vector<Stretch>()> layout = {};
    /// A file of the user's own folders: the new one gets its owner and rights.
    bool keepsProtection = false;
};

}  // namespace corvalence::store
